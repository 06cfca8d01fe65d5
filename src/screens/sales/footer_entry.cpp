#include "screens/sales/footer_entry.h"

#include "data/format.h"
#include "sales/documents.h"
#include "sales/totals.h"
#include "screens/sales/typed_boxes.h"
#include "ui/form.h"
#include "ui/record_panel.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

namespace {

QList<BoxGroup> groups(const DocumentHeaders& h) {
    const QString money = QStringLiteral("#####0.00");
    return {{QStringLiteral("Remises et frais"),
             {{&h.fac_rem, QStringLiteral("Remise % :"), QStringLiteral("txtrem"), 8, QStringLiteral("#0.00")},
              {&h.fac_esc, QStringLiteral("Escompte % :"), QStringLiteral("txtesc"), 8, QStringLiteral("#0.00")},
              {&h.fac_port, QStringLiteral("Port HT :"), QStringLiteral("Txtport"), 10, money},
              {&h.fac_exo, QStringLiteral("Exonéré :"), QStringLiteral("Txtexo"), 10, money},
              {&h.fac_acpt, QStringLiteral("Acompte :"), QStringLiteral("txtacpt"), 10, money}}},
            {QStringLiteral("Règlement"),
             {{&h.fac_rglt,
               QStringLiteral("Règlement :"),
               QStringLiteral("txtrglt"),
               0,
               {},
               false,
               false,
               QStringLiteral("Cmdrgt")},
              {&h.fac_ech, QStringLiteral("Echéance :"), QStringLiteral("txtech"), 10, {}, false, true},
              {&h.fac_mes, QStringLiteral("Message :"), QStringLiteral("txtmes"), 26}}},
            {QStringLiteral("Totaux"),
             {{&h.fac_ht, QStringLiteral("Total HT :"), QStringLiteral("txtht"), 12, money, false, true},
              {&h.fac_tv1, QStringLiteral("TVA 1 :"), QStringLiteral("txttv1"), 10, money, false, true},
              {&h.fac_tv2, QStringLiteral("TVA 2 :"), QStringLiteral("txttv2"), 10, money, false, true},
              {&h.fac_tv3, QStringLiteral("TVA 3 :"), QStringLiteral("txttv3"), 10, money, false, true},
              {&h.fac_tvp, QStringLiteral("TVA port :"), QStringLiteral("txttvp"), 10, money, false, true},
              {&h.fac_ttc, QStringLiteral("Total TTC :"), QStringLiteral("txtttc"), 12, money, false, true},
              {&h.fac_ffa, QStringLiteral("Net à payer :"), QStringLiteral("txtffa"), 12, money, false, true}}}};
}

} // namespace

FooterEntry::FooterEntry(Form& form, SalesBook& book)
    : TrayPart(&form),
      form_(form),
      book_(book),
      table_(book.kind().headers),
      document_(table_),
      boxes_(new RecordPanel(groups(table_), 3, this)),
      codes_(form, *boxes_, {{DataFile::Molven, book.molven}}),
      validate_(form.button(QStringLiteral("Cmdvalpied"), QStringLiteral("Va&lider le pied"),
                            [this] { attempt([this] { validate(); }); })),
      otherVat_(new QLabel(this)) {
    otherVat_->setObjectName(QStringLiteral("lblautretva"));
    for (const FieldBox& box : boxes_->boxes()) form_.bind(box.field->name, boxes_->edit(*box.field));
    style::emphasise(*boxes_->edit(table_.fac_ffa));
    codes_.wire([this](const Field&) { codes_.showWords(); });
    auto* leave =
        form.leaveButton(QStringLiteral("Cmdquitpied"), QStringLiteral("&Fermer le pied"), [this] { left(); });
    auto* row = new QHBoxLayout;
    row->addWidget(otherVat_);
    row->addStretch();
    row->addWidget(validate_);
    row->addWidget(leave);
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(boxes_);
    layout->addLayout(row);
}

void FooterEntry::open(const Record& document) {
    follow(document);
    const bool open = document[table_.fac_cpt] != documents::Transferred;
    boxes_->setEditable(open);
    form_.allow(validate_, open, QStringLiteral("Ce document est transféré en comptabilité"));
    boxes_->edit(table_.fac_rem)->setFocus();
}

void FooterEntry::follow(const Record& document) {
    document_ = document;
    fill(document);
}

void FooterEntry::fill(const Record& footer) {
    boxes_->load(footer);
    codes_.showWords();
    const Decimal vat = totals::otherVat(table_, footer);
    otherVat_->setText(vat.isZero()
                           ? QString()
                           : QStringLiteral("TVA des autres codes : ") + format(vat, QStringLiteral("#####0.00")));
}

void FooterEntry::reread(const Record& document) {
    Record footer = document;
    carryTyped(*boxes_, document_, footer);
    document_ = document;
    fill(footer);
}

QString FooterEntry::unsaved() const {
    return boxes_->differsFrom(document_) ? QStringLiteral("Pied du document") : QString();
}

void FooterEntry::validate() {
    Record header = document_;
    boxes_->store(header);
    documents::changeFooter(book_, header, document_);
    written();
    left();
}

} // namespace molven

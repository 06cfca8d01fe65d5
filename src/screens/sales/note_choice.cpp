#include "screens/sales/note_choice.h"

#include "data/format.h"
#include "sales/integration.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

NoteChoice::NoteChoice(Form& form, SalesBook& book)
    : TrayPart(&form),
      form_(form),
      book_(book),
      number_(new Edit(this)),
      grid_(new Grid(QStringLiteral("DBGrid4"),
                     {{&strlive.fac_no, QStringLiteral("N° BL"), 80},
                      {&strlive.fac_datf, QStringLiteral("Date"), 90},
                      {&strlive.fac_refc, QStringLiteral("Réf. commande"), 160},
                      {&strlive.fac_pat, QStringLiteral("Patient"), 220},
                      {&strlive.fac_ht, QStringLiteral("Total HT"), 100, QStringLiteral("#####0.00")}},
                     this)),
      validate_(form.button(QStringLiteral("Cmdokchoix"), QStringLiteral("Intégrer ce b&on"),
                            [this] { attempt([this] { integrate(); }); })) {
    number_->setObjectName(QStringLiteral("txtchoix"));
    number_->setMaxLength(6);
    number_->setFixedWidth(style::boxWidth(6));
    form_.onLeft(number_, [this] { number_->put(padded(number_->text(), 6)); });
    grid_->becameCurrent = [this](const Record& note) { number_->put(note[strlive.fac_no]); };
    grid_->chosen = [this](const Record& note) {
        number_->put(note[strlive.fac_no]);
        form_.guarded([this] { attempt([this] { integrate(); }); });
    };
    auto* leave =
        form.leaveButton(QStringLiteral("Cmdquitchoix"), QStringLiteral("&Fin de l'intégration"), [this] { left(); });
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("N° du bon de livraison :"), this));
    row->addWidget(number_);
    row->addStretch();
    row->addWidget(validate_);
    row->addWidget(leave);
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(grid_);
    layout->addLayout(row);
}

void NoteChoice::open(const Record& invoice) {
    integration::openDeliveryNotes(book_, invoice);
    invoice_ = invoice;
    number_->put({});
    grid_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        return book_.vente.select(strlive, integration::openNotesOf(*invoice_) && filter,
                                  order.orElse(Order{strlive.tri_datf, strlive.fac_no}));
    });
    number_->setFocus();
}

void NoteChoice::integrate() {
    integration::integrate(book_, *invoice_, number_->text());
    written();
    grid_->rows().refresh();
    number_->put({});
    if (grid_->rows().rowCount() == 0) left();
}

} // namespace molven

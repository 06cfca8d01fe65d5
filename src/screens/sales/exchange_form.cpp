#include "screens/sales/exchange_form.h"

#include "data/clock.h"
#include "data/format.h"
#include "screens/sales/exchange_mail.h"
#include "stock/exchange_files.h"
#include "ui/access_keys.h"
#include "ui/edit.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<GridColumn> exchangeColumns() {
    const ProductUnits& u = tripro;
    return {{&u.num_vte, QStringLiteral("Document"), 80},
            {&u.imm_art, QStringLiteral("Immatriculation"), 115},
            {&u.ref_art, QStringLiteral("Référence"), 110},
            {&u.pro_li1, QStringLiteral("Désignation"), 280},
            {&u.lot_art, QStringLiteral("Lot"), 90},
            {&u.dat_per, QStringLiteral("Péremption"), 90},
            {&u.nom_dep, QStringLiteral("Client"), 180},
            {&u.pro_vte, QStringLiteral("Prix H.T."), 90, QStringLiteral("#####0.00")}};
}

} // namespace

ExchangeForm::ExchangeForm(Desk& desk, const QString& name, Kind kind)
    : Form(desk, name),
      kind_(kind),
      files_(session()),
      number_(new Edit(this)),
      address_(new Edit(this)),
      list_(new Grid(QStringLiteral("DBGrid1"), exchangeColumns(), this)),
      count_(new QLabel(this)) {
    number_->setObjectName(QStringLiteral("txtno"));
    number_->setMaxLength(6);
    number_->setFixedWidth(style::boxWidth(6));
    onLeft(number_, [this] { number_->put(padded(number_->text(), 6)); });
    address_->setObjectName(QStringLiteral("txtmail"));
    count_->setObjectName(QStringLiteral("Label1"));
    count_->setTextFormat(Qt::PlainText);
    auto* caption = new QLabel(QStringLiteral("Bon de &livraison :"), this);
    caption->setBuddy(number_);
    auto* addition = button(QStringLiteral("Cmdok"), QStringLiteral("&Ajouter le bon"), [this] { add(); });
    setDefaultButton(addition);
    auto* top = new QHBoxLayout;
    for (QWidget* each : QList<QWidget*>{caption, number_, addition}) top->addWidget(each);
    top->addWidget(count_, 1);

    auto* to = new QLabel(QStringLiteral("A&dresse :"), this);
    to->setBuddy(address_);
    auto* foot = new QHBoxLayout;
    foot->addWidget(button(QStringLiteral("Cmdfin"), QStringLiteral("&Enregistrer le fichier"), [this] { save(); }));
    foot->addSpacing(style::WideGap);
    foot->addWidget(to);
    foot->addWidget(address_, 1);
    foot->addWidget(button(QStringLiteral("Cmdmail"), QStringLiteral("En&voyer"), [this] { send(); }));
    foot->addSpacing(style::WideGap);
    foot->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(list_, 1);
    layout->addLayout(foot);
    tabThrough(tabStopsOf(*layout));
    delivery_exchange::clear(files_);
    showUnits();
    resize(1100, 620);
    applyTitle(kind == Kind::Units ? QStringLiteral("Bon de livraison vers disquette")
                                   : QStringLiteral("Extraction de bons de livraison"));
    number_->setFocus();
}

void ExchangeForm::showUnits() {
    list_->rows().setQuery([this](const Criterion& filter, const Order& order) {
        const ProductUnits& u = tripro;
        return files_.tripro.select(u, filter, order.orElse(Order{u.num_vte, u.ref_art}));
    });
    const int units = list_->rows().rowCount();
    count_->setText(units == 0 ? QString() : counted(units, QStringLiteral("produit")));
}

void ExchangeForm::add() {
    delivery_exchange::add(files_, number_->text());
    note_ = number_->text();
    saved_.clear();
    address_->put(exchange_mail::addressOf(session(), delivery_exchange::clientOf(files_, note_)));
    showUnits();
    number_->setFocus();
    number_->selectAll();
}

void ExchangeForm::save() {
    const QList<Record> units = delivery_exchange::chosen(files_);
    if (kind_ == Kind::Units) {
        saved_ = saveUnits();
        return notify(QStringLiteral("Enregistrement sur : ") + QDir::toNativeSeparators(saved_));
    }
    saved_ = exchange_files::writeExtraction(
        exchange_files::folder(session()) + exchange_files::extractionName(Clock::today()), units);
    notify(QStringLiteral("FICHIER %1 TERMINE").arg(QFileInfo(saved_).fileName()));
}

/// On the diskette the file has one name, which the receiver looks for.
QString ExchangeForm::saveUnits() {
    QString path;
    if (prompt().ask(QStringLiteral("Enregistrement du fichier sur disquette ? "))) {
        prompt().tell(QStringLiteral("Veuillez mettre la disquette dans le lecteur"));
        path = exchange_files::diskette(session()) + QStringLiteral("tripro.mdb");
    } else {
        path = exchange_files::folder(session()) + exchange_files::unitFileName(note_);
    }
    exchange_files::write(path, delivery_exchange::chosen(files_),
                          progress(*this, QStringLiteral("Enregistrement du fichier")));
    return path;
}

void ExchangeForm::send() {
    if (saved_.isEmpty()) throw Refusal(QStringLiteral("Enregistrez d'abord le fichier"), QStringLiteral("Cmdfin"));
    exchange_mail::send(session(), saved_, delivery_exchange::clientOf(files_, note_), address_->text().trimmed());
}

} // namespace molven

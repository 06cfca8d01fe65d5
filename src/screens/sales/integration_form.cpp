#include "screens/sales/integration_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "reference/party_tables.h"
#include "stock/exchange_files.h"
#include "ui/access_keys.h"
#include "ui/edit.h"
#include "ui/pick_lists.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

constexpr int Told = 20; ///< units refused, one message each

QList<GridColumn> integrationColumns() {
    const ProductUnits& u = tripro;
    return {{&u.imm_art, QStringLiteral("Immatriculation"), 115},
            {&u.ref_art, QStringLiteral("Référence"), 120},
            {&u.pro_li1, QStringLiteral("Désignation"), 280},
            {&u.lot_art, QStringLiteral("Lot"), 100},
            {&u.dat_per, QStringLiteral("Péremption"), 90},
            {&u.num_ste, QStringLiteral("N° stérilisation"), 110},
            {&u.num_vte, QStringLiteral("Document"), 80},
            {&u.pro_vte, QStringLiteral("Prix"), 90, QStringLiteral("#####0.00")}};
}

} // namespace

IntegrationForm::IntegrationForm(Desk& desk)
    : Form(desk, QStringLiteral("T_dkliv")),
      files_(openUnitFiles(workspace_, session())),
      number_(new Edit(this)),
      supplier_(new Edit(this)),
      ordered_(new DateBox(this)),
      delivered_(new DateBox(this)),
      list_(new Grid(QStringLiteral("DBGrid1"), integrationColumns(), this)),
      count_(new QLabel(this)) {
    number_->setMaxLength(8);
    supplier_->setMaxLength(6);
    for (Edit* edit : {number_, supplier_}) edit->setFixedWidth(style::boxWidth(edit->maxLength()));
    onLeft(number_, [this] { number_->put(padded(number_->text(), 6)); });
    onLeft(supplier_, [this] { supplier_->put(padded(supplier_->text(), 6)); });
    onPick(supplier_, [this] {
        pick(pick_lists::suppliers(files_.molven,
                                   [this](const Record& chosen) { supplier_->put(chosen[strfournis.fou_cod]); }));
    });
    count_->setObjectName(QStringLiteral("Label1"));
    count_->setTextFormat(Qt::PlainText);
    auto* top = new QHBoxLayout;
    box(*top, number_, "txtno", "N° du &bon, ou date aaaammjj :");
    auto* reading = button(QStringLiteral("Cmdok"), QStringLiteral("&Lire le fichier"), [this] { read(); });
    top->addWidget(reading);
    top->addWidget(button(QStringLiteral("Cmdfichier"), QStringLiteral("Au&tre fichier..."), [this] { chooseFile(); }));
    top->addWidget(count_, 1);
    auto* foot = new QHBoxLayout;
    box(*foot, supplier_, "txtfou_cde", "&Fournisseur :");
    box(*foot, ordered_, "Mskdatcde", "Date &commande :");
    box(*foot, delivered_, "Mskdatliv", "Date li&vraison :");
    foot->addStretch();
    foot->addWidget(button(QStringLiteral("Cmdintegre"), QStringLiteral("&Intégrer"), [this] { integrate(); }));
    foot->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(list_, 1);
    layout->addLayout(foot);
    tabThrough(tabStopsOf(*layout));
    setDefaultButton(reading);
    delivered_->put(dateText(Clock::today()));
    supplier_->put(session().rules().sisterSupplier());
    resize(1100, 620);
    applyTitle(QStringLiteral("Intégration de produits"));
    number_->setFocus();
}

Edit* IntegrationForm::box(QHBoxLayout& row, Edit* edit, const char* name, const char* caption) {
    edit->setObjectName(QString::fromLatin1(name));
    auto* label = new QLabel(QString::fromUtf8(caption), this);
    label->setBuddy(edit);
    row.addWidget(label);
    row.addWidget(edit);
    row.addSpacing(style::Gap);
    return edit;
}

/// Without a number the file is on the diskette.
void IntegrationForm::read() {
    show({});
    if (!number_->text().isEmpty()) return readFrom(exchange_files::pathOf(session(), number_->text()));
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir intégrer une disquette ? "))) return;
    prompt().tell(QStringLiteral("Mettre la disquette dans le lecteur"));
    readFrom(exchange_files::diskette(session()) + QStringLiteral("tripro.mdb"));
}

void IntegrationForm::chooseFile() {
    const QString path =
        QFileDialog::getOpenFileName(this, QStringLiteral("Fichier à intégrer"), exchange_files::folder(session()),
                                     QStringLiteral("Fichiers d'échange (*.mdb *.csv)"));
    if (path.isEmpty()) return;
    show({});
    readFrom(path);
}

void IntegrationForm::readFrom(const QString& path) {
    show(exchange_files::read(path));
    const QString supplier = supplier_->text();
    if (!supplier.isEmpty() && supplier == session().rules().sisterSupplier())
        ordered_->put(units_.first()[tripro.dat_vte]); // the sister company's note is the order
    supplier_->setFocus();
}

void IntegrationForm::show(const QList<Record>& units) {
    units_ = units;
    list_->rows().setRecords(units);
    count_->setText(units.isEmpty() ? QString() : QStringLiteral("%1 produits à intégrer").arg(units.size()));
}

void IntegrationForm::integrate() {
    if (units_.isEmpty()) throw Refusal(QStringLiteral("Lisez d'abord un fichier"), QStringLiteral("txtno"));
    const unit_integration::Order order =
        unit_integration::checked(files_, {supplier_->text(), ordered_->value(), delivered_->value()});
    const qsizetype others = unit_integration::fromAnotherSupplier(files_, units_, order.supplier);
    if (others > 0 && !prompt().confirm(QStringLiteral("Ce fichier a déjà été intégré sous un autre fournisseur : "
                                                       "l'intégrer tout de même ? "),
                                        counted(others, QStringLiteral("produit")) + QStringLiteral(" déjà là")))
        return;
    const unit_integration::Outcome outcome = unit_integration::integrate(
        session(), files_, units_, order, progress(*this, QStringLiteral("Intégration des produits")));
    show(outcome.unknown);
    tell(outcome);
}

void IntegrationForm::tell(const unit_integration::Outcome& outcome) {
    for (const Record& unit : outcome.unknown.mid(0, Told))
        notify(QStringLiteral("Référence FOURNISSEUR inconnue %1 impossible de créer : %2")
                   .arg(unit[tripro.ref_art], unit[tripro.imm_art]));
    if (outcome.unknown.size() > Told)
        notify(QStringLiteral("Référence FOURNISSEUR inconnue : et %1 autres, dans la liste")
                   .arg(outcome.unknown.size() - Told));
    QStringList words;
    if (outcome.created.isEmpty())
        words.append(QStringLiteral("Aucun produit intégré"));
    else
        words.append(QStringLiteral("Intégration de %1 : %2 à %3")
                         .arg(counted(outcome.created.size(), QStringLiteral("produit")), outcome.created.first(),
                              outcome.created.last()));
    if (outcome.present > 0) words.append(QStringLiteral("déjà là : %1").arg(outcome.present));
    if (!outcome.unknown.isEmpty()) words.append(QStringLiteral("refusés : %1").arg(outcome.unknown.size()));
    count_->setText(words.join(QStringLiteral(" ; ")));
}

} // namespace molven

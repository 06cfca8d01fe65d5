#include "screens/stock/delivery_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "ui/grid.h"
#include "ui/progress.h"
#include "ui/record_panel.h"
#include "ui/scan_box.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace molven {

namespace {

QList<FieldBox> deliveryBoxes() {
    const auto& u = strproduit;
    return {{&u.fou_cde, QStringLiteral("F&ournisseur :"), {}, 0, {}, false, false, QStringLiteral("Cmdfouliv")},
            {&u.num_cde, QStringLiteral("N° &commande :"), {}, 14},
            {&u.dat_cde, QStringLiteral("Date comman&de :"), {}, 0, {}, true},
            {&u.num_liv, QStringLiteral("N° &BL fournisseur :"), {}, 14},
            {&u.dat_liv, QStringLiteral("Date r&éception :"), {}, 0, {}, true},
            {&u.num_dep, QStringLiteral("Dé&pôt :"), {}, 4, {}, false, false, QStringLiteral("Cmddepliv")}};
}

QList<GridColumn> unitColumns() {
    return {{&strproduit.ref_art, QStringLiteral("Référence"), 120},
            {&strproduit.pro_li1, QStringLiteral("Désignation"), 340},
            {&strproduit.lot_art, QStringLiteral("Lot"), 110},
            {&strproduit.dat_per, QStringLiteral("Péremption"), 90},
            {&strproduit.fou_imm, QStringLiteral("N° série"), 140},
            {&strproduit.pro_pac, QStringLiteral("Prix d'achat"), 90, QStringLiteral("#####0.00")}};
}

Record rowOf(const DeliveredUnit& unit) {
    Record row(strproduit);
    row[strproduit.ref_art] = unit.reference;
    row[strproduit.pro_li1] = unit.designation;
    row[strproduit.lot_art] = unit.lot;
    row[strproduit.dat_per] = unit.expiry;
    row[strproduit.fou_imm] = unit.serial;
    row[strproduit.pro_pac] = Decimal::fromText(unit.price);
    return row;
}

} // namespace

DeliveryForm::DeliveryForm(Desk& desk)
    : Form(desk, QStringLiteral("T_lecliv")), files_(openUnitFiles(workspace_, session())) {
    panel_ = new RecordPanel(deliveryBoxes(), 2, this);
    for (const FieldBox& box : panel_->boxes()) bind(box.field->name, panel_->edit(*box.field));
    codes_.emplace(*this, *panel_, QHash<DataFile, Database>{{DataFile::Molven, files_.molven}});
    codes_->refuseOnLeaving({&strproduit.fou_cde, &strproduit.num_dep});
    codes_->wire([this](const Field&) { codes_->showWords(); });
    grid_ = new Grid(QStringLiteral("DBGridlus"), unitColumns(), this);
    grid_->becameCurrent = [this](const Record& unit) { price_->put(shown(unit[strproduit.pro_pac])); };
    auto* takeOut = new QShortcut(Qt::Key_Delete, grid_);
    takeOut->setContext(Qt::WidgetShortcut);
    connect(takeOut, &QShortcut::activated, this, [this] { this->takeOut(grid_->currentIndex().row()); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(panel_);
    layout->addLayout(buildScan());
    layout->addWidget(grid_, 1);
    layout->addLayout(buildButtons());
    resize(1060, 640);
    applyTitle(QStringLiteral("Lecture d'une livraison"));
    clear();
    panel_->edit(strproduit.fou_cde)->setFocus();
}

QLayout* DeliveryForm::buildScan() {
    scan_ = new ScanBox(
        *this, QStringLiteral("txtlect"), [this](const QString& scanned) { return take(scanned); }, this);
    price_ = new Edit(this);
    price_->setObjectName(QStringLiteral("txtprix"));
    price_->setAlignment(Qt::AlignRight);
    price_->setFixedWidth(style::boxWidth(10));
    bind(strproduit.pro_pac.name, price_);
    onLeft(price_, [this] { setPrice(); });
    const auto captioned = [this](const QString& caption, QWidget* box) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(box);
        return label;
    };
    auto* row = new QHBoxLayout;
    row->addWidget(captioned(QStringLiteral("&Lire :"), scan_));
    row->addWidget(scan_, 1);
    row->addWidget(captioned(QStringLiteral("Prix d'ac&hat de l'article :"), price_));
    row->addWidget(price_);
    return row;
}

QLayout* DeliveryForm::buildButtons() {
    takeBack_ = button(QStringLiteral("Cmdannullect"), QStringLiteral("Re&tirer la dernière"), [this] {
        takeOut(units_.size() - 1);
        scan_->setFocus();
    });
    validate_ = button(QStringLiteral("Cmdvalliv"), QStringLiteral("&Valider la livraison"), [this] { receive(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("lbllect"));
    auto* row = new QHBoxLayout;
    row->addWidget(count_, 1);
    for (QPushButton* made : {takeBack_, validate_, quit}) row->addWidget(made);
    return row;
}

void DeliveryForm::clear() {
    units_.clear();
    for (const FieldBox& box : panel_->boxes()) panel_->edit(*box.field)->put({});
    panel_->edit(strproduit.dat_liv)->put(dateText(Clock::today()));
    panel_->edit(strproduit.num_dep)->put(MainDepot);
    codes_->showWords();
    showUnits();
}

bool DeliveryForm::take(const QString& scanned) {
    DeliveredUnit unit = deliveries::read(files_.molven, scanned, units_);
    for (const DeliveredUnit& before : units_)
        if (before.reference == unit.reference) unit.price = before.price; // as bought in this delivery
    units_.append(unit);
    showUnits();
    if (unit.price.isEmpty()) notify(QStringLiteral("Prix d'achat à saisir : ") + unit.reference);
    return true;
}

void DeliveryForm::takeOut(qsizetype row) {
    if (row < 0 || row >= units_.size()) return;
    units_.removeAt(row);
    showUnits();
}

/// One price an article.
void DeliveryForm::setPrice() {
    const auto current = grid_->current();
    if (!current) return;
    if (!Decimal::parse(price_->text()))
        throw Refusal(QStringLiteral("Valeur numérique incorrecte : ") + price_->text(), strproduit.pro_pac.name);
    for (DeliveredUnit& unit : units_)
        if (unit.reference == current->value(strproduit.ref_art)) unit.price = price_->text().trimmed();
    const int row = grid_->currentIndex().row();
    showUnits();
    grid_->selectRow(row);
}

void DeliveryForm::showUnits() {
    QList<Record> rows;
    for (const DeliveredUnit& unit : units_) rows.append(rowOf(unit));
    grid_->rows().setRecords(rows);
    if (!rows.isEmpty()) grid_->selectRow(static_cast<int>(rows.size()) - 1);
    count_->setText(QStringLiteral("Produits lus : %1").arg(units_.size()));
    for (QPushButton* made : {takeBack_, validate_}) made->setEnabled(!units_.isEmpty());
}

Receipt DeliveryForm::delivery() const {
    const auto value = [this](const Field& field) { return panel_->edit(field)->value().trimmed(); };
    Receipt receipt;
    receipt.supplier = value(strproduit.fou_cde);
    receipt.orderNumber = value(strproduit.num_cde);
    receipt.orderDate = value(strproduit.dat_cde);
    receipt.deliveryNumber = value(strproduit.num_liv);
    receipt.deliveryDate = value(strproduit.dat_liv);
    receipt.depot = value(strproduit.num_dep);
    return receipt;
}

void DeliveryForm::receive() {
    Receipt receipt = delivery();
    receipt.operatorWord = session().code_util;
    receipt.currency = parameters::companyCurrency(files_.molven, session().spe_mon);
    const auto created = deliveries::receive(files_, session().rules(), receipt, units_,
                                             progress(*this, QStringLiteral("Création des produits")));
    QStringList runs;
    for (const receipts::Created& run : created)
        runs.append(run.first == run.last ? run.first : run.first + QStringLiteral(" à ") + run.last);
    notify(QStringLiteral("Produits créés : ") + runs.join(QStringLiteral(", ")));
    clear();
    panel_->edit(strproduit.fou_cde)->setFocus();
}

} // namespace molven

#include "screens/sales/replenishment_form.h"

#include "data/format.h"
#include "reference/codes.h"
#include "sales/document_kind.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/printed_list.h"
#include "ui/record_panel.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const auto& Row = strreassort;

QList<GridColumn> replenishmentColumns() {
    const QString whole = QStringLiteral("####0");
    return {{&Row.rea_dep, QStringLiteral("Dépôt"), 60},
            {&Row.rea_nom, QStringLiteral("Nom du dépôt"), 220},
            {&Row.rea_ref, QStringLiteral("Référence"), 110},
            {&Row.rea_lib, QStringLiteral("Désignation"), 270},
            {&Row.rea_dot, QStringLiteral("Dotation"), 70, whole},
            {&Row.rea_stk, QStringLiteral("En dépôt"), 70, whole},
            {&Row.rea_man, QStringLiteral("Manque"), 70, whole},
            {&Row.rea_don, QStringLiteral("À transférer"), 90, whole},
            {&Row.rea_ach, QStringLiteral("À acheter"), 85, whole}};
}

QList<GridColumn> purchaseColumns() {
    return {{&strachat.ach_fou, QStringLiteral("Fournisseur")},      {&strachat.ach_nom, QStringLiteral("Nom")},
            {&strachat.ach_rfo, QStringLiteral("Réf. fournisseur")}, {&strachat.ach_ref, QStringLiteral("Référence")},
            {&strachat.ach_lib, QStringLiteral("Désignation")},      {&strachat.ach_qte, QStringLiteral("Quantité")}};
}

/// Of whole numbers, in tens of thousands of rows.
qint64 sumOf(const QList<Record>& rows, const Field& field) {
    qint64 sum = 0;
    for (const Record& row : rows) sum += row.value(field).toLongLong();
    return sum;
}

} // namespace

ReplenishmentForm::ReplenishmentForm(Desk& desk)
    : Form(desk, QStringLiteral("T_reassort")), notes_(session(), documentKind(QStringLiteral("BTR"))) {
    panel_ = new RecordPanel(QList<FieldBox>{{&Row.rea_dep,
                                              QStringLiteral("&Dépôt (vide : tous) :"),
                                              QStringLiteral("txtdep"),
                                              4,
                                              {},
                                              false,
                                              false,
                                              QStringLiteral("Cmddep")}},
                             1, this);
    bind(Row.rea_dep.name, panel_->edit(Row.rea_dep));
    codes_.emplace(*this, *panel_, QHash<DataFile, Database>{{DataFile::Molven, notes_.molven}});
    codes_->wire([this](const Field&) { find(); });
    grid_ = new Grid(QStringLiteral("DBGrid1"), replenishmentColumns(), this);
    grid_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("Label1"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(panel_);
    layout->addWidget(grid_, 1);
    layout->addWidget(count_);
    layout->addLayout(buttons());
    resize(1240, 700);
    applyTitle(QStringLiteral("Réassort des dépôts"));
    guarded([this] { find(); });
    grid_->setFocus();
}

QLayout* ReplenishmentForm::buttons() {
    auto* search = button(QStringLiteral("cmdvalide"), QStringLiteral("&Actualiser"), [this] { find(); });
    auto* all = button(QStringLiteral("Cmdtout"), QStringLiteral("&Tout choisir"), [this] { grid_->selectAll(); });
    auto* write =
        button(QStringLiteral("Cmdtransfer"), QStringLiteral("Établir les &bons de transfert"), [this] { transfer(); });
    auto* purchases =
        button(QStringLiteral("Cmdachat"), QStringLiteral("&Liste d'achat"), [this] { exportPurchases(); });
    auto* printButton = button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {search, all}) row->addWidget(made);
    row->addWidget(new QLabel(QStringLiteral("Maj + flèches ou Ctrl + clic pour choisir"), this), 1);
    for (QPushButton* made : {write, purchases, printButton, quit}) row->addWidget(made);
    return row;
}

void ReplenishmentForm::find() {
    rows_.clear();
    grid_->rows().setRecords({});
    count_->clear();
    codes_->showWords();
    const QString depot = panel_->edit(Row.rea_dep)->value();
    codes::require(notes_.molven, Row.rea_dep, codes::Depot, depot);
    rows_ = replenishment::shortages(notes_.molven, depot);
    grid_->rows().setRecords(rows_);
    grid_->clearSelection();
    count_->setText(rows_.isEmpty() ? QStringLiteral("Rien ne manque aux dotations")
                                    : QStringLiteral("Manque : %1, à transférer : %2, à acheter : %3")
                                          .arg(sumOf(rows_, Row.rea_man))
                                          .arg(sumOf(rows_, Row.rea_don))
                                          .arg(sumOf(rows_, Row.rea_ach)));
}

/// The rows chosen of which something can be given, together by depot.
QList<QList<Record>> ReplenishmentForm::chosenByDepot() const {
    QMap<QString, QList<Record>> byDepot;
    for (const QModelIndex& index : grid_->selectionModel()->selectedRows())
        if (const auto row = grid_->rows().record(index.row()); row && !row->operator[](Row.rea_don).isZero())
            byDepot[row->value(Row.rea_dep)].append(*row);
    return byDepot.values();
}

/// One note a depot; one that is refused does not stop the others.
void ReplenishmentForm::transfer() {
    const QList<QList<Record>> chosen = chosenByDepot();
    if (chosen.isEmpty()) throw Refusal(QStringLiteral("Choisissez des lignes à transférer"));
    qint64 units = 0;
    for (const QList<Record>& rows : chosen) units += sumOf(rows, Row.rea_don);
    const QString notes = chosen.size() == 1 ? QStringLiteral("1 bon de transfert")
                                             : QStringLiteral("%1 bons de transfert").arg(chosen.size());
    if (!prompt().ask(QStringLiteral("Établir %1 pour %2 ?").arg(notes, counted(units, QStringLiteral("unité")))))
        return;
    for (const QList<Record>& rows : chosen) {
        const QString depot = rows.first()[Row.rea_dep];
        try {
            const Record note = replenishment::write(notes_, rows);
            notify(QStringLiteral("Dépôt %1 : bon de transfert %2").arg(depot, note[strbtre.fac_no]));
        } catch (const Refusal& refusal) {
            prompt().tell(QStringLiteral("Dépôt %1 : %2").arg(depot, refusal.text), {}, Icon::Warning);
        }
    }
    find();
}

/// Everything that is to be bought for the depots shown, whatever is chosen or filtered.
void ReplenishmentForm::exportPurchases() {
    const QList<Record> purchases = replenishment::purchases(notes_.molven, rows_);
    if (purchases.isEmpty()) throw Refusal(QStringLiteral("Rien à acheter : le dépôt principal donne tout"));
    Grid list(QStringLiteral("DBGridachat"), purchaseColumns(), this);
    list.rows().setRecords(purchases);
    list.exportCsv();
}

void ReplenishmentForm::print() {
    if (rows_.isEmpty()) throw Refusal(QStringLiteral("Rien ne manque aux dotations"));
    desk().print(printedList(QStringLiteral("RÉASSORT DES DÉPÔTS"), grid_->rows()));
}

} // namespace molven

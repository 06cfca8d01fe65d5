#include "screens/stock/inventory_count_form.h"

#include "data/format.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

const auto& c = inventory_counts::strcomptage;
const QString Pattern = QStringLiteral("#####0.00");

QList<GridColumn> countColumns() {
    return {{&c.art_ref, QStringLiteral("Référence"), 130},
            {&c.art_li1, QStringLiteral("Désignation"), 320},
            {&c.art_stk, QStringLiteral("Stock connu"), 90, Pattern},
            {&c.stk1_art, QStringLiteral("Compté 1"), 90, Pattern},
            {&c.stk2_art, QStringLiteral("Compté 2"), 90, Pattern},
            {&c.stk3_art, QStringLiteral("Compté 3"), 90, Pattern},
            {&c.difference, QStringLiteral("Écart"), 90, Pattern},
            {&c.stk_art, QStringLiteral("Inventorié"), 80}};
}

QList<FieldBox> countBoxes() {
    return {{&c.art_ref, QStringLiteral("Référence :"), QStringLiteral("txtref"), 13, {}, false, true},
            {&c.art_li1, QStringLiteral("Désignation :"), QStringLiteral("txtli1"), 34, {}, false, true},
            {&c.stk1_art, QStringLiteral("Compté, lieu &1 :"), {}, 10, Pattern},
            {&c.stk2_art, QStringLiteral("Compté, lieu &2 :"), {}, 10, Pattern},
            {&c.stk3_art, QStringLiteral("Compté, lieu &3 :"), {}, 10, Pattern},
            {&c.stk_art, QStringLiteral("&Inventorié (O/N) :")}};
}

} // namespace

InventoryCountForm::InventoryCountForm(Desk& desk)
    : Form(desk, QStringLiteral("T_comptage")), molven_(workspace_.open(session().molven())) {
    grid_ = new Grid(QStringLiteral("DBGrid1"), countColumns(), this);
    grid_->becameCurrent = [this](const Record& counts) { bringUp(counts); };
    grid_->chosen = [this](const Record&) { panel_->edit(c.stk1_art)->setFocus(); };
    panel_ = new RecordPanel(countBoxes(), 3, this);
    for (const FieldBox& box : panel_->boxes()) bind(box.field->name, panel_->edit(*box.field));
    total_ = new QLabel(this);
    total_->setObjectName(QStringLiteral("Label1"));
    auto* keep = button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { save(); });
    setDefaultButton(keep);
    auto* row = new QHBoxLayout;
    row->addWidget(total_, 1);
    row->addWidget(keep);
    row->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addWidget(panel_);
    layout->addLayout(row);
    resize(1100, 660);
    applyTitle(QStringLiteral("Comptage des articles non suivis"));
    list();
    grid_->selectRow(0);
    grid_->setFocus();
}

void InventoryCountForm::list() {
    grid_->rows().setRecords(inventory_counts::all(molven_));
    showTotal();
}

void InventoryCountForm::showTotal() {
    int counts = 0;
    for (int row = 0; row < grid_->rows().rowCount(); ++row)
        if (!grid_->rows().record(row)->isNull(c.counted)) ++counts;
    total_->setText(QStringLiteral("Articles comptés : %1 sur %2").arg(counts).arg(grid_->rows().rowCount()));
}

void InventoryCountForm::bringUp(const Record& counts) {
    if (hasUnsavedWork() && counts[c.art_ref] != (*shown_)[c.art_ref] && !mayLoseWork()) {
        grid_->followRecord(*shown_, {&c.art_ref});
        return;
    }
    shown_ = counts;
    panel_->load(counts);
}

void InventoryCountForm::save() {
    if (!shown_) throw Refusal(QStringLiteral("Aucun article sélectionné"));
    Record counts = *shown_;
    panel_->store(counts);
    inventory_counts::save(molven_, *shown_, counts);
    shown_.reset();
    list();
    const int row = grid_->rows().rowOf(counts, {&c.art_ref});
    grid_->selectRow(std::min(row + 1, grid_->rows().rowCount() - 1));
    panel_->edit(c.stk1_art)->setFocus();
    panel_->edit(c.stk1_art)->selectAll();
}

} // namespace molven

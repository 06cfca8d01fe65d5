#include "screens/sales/unit_range.h"

#include "data/errors.h"
#include "sales/unit_rules.h"
#include "screens/sales/document_layout.h"
#include "stock/immatriculation.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

QList<GridColumn> unitChoiceColumns() {
    return {{&strproduit.imm_art, QStringLiteral("Immatriculation"), 110},
            {&strproduit.pro_li1, QStringLiteral("Désignation"), 330},
            {&strproduit.lot_art, QStringLiteral("Lot"), 100},
            {&strproduit.dat_per, QStringLiteral("Péremption"), 85},
            {&strproduit.num_dep, QStringLiteral("Dépôt"), 55},
            {&strproduit.ref_art, QStringLiteral("Référence"), 110},
            {&strproduit.fou_imm, QStringLiteral("N° de série fournisseur"), 180},
            {&strproduit.num_vte, QStringLiteral("Document"), 80}};
}

UnitRange::UnitRange(Form& form, SalesBook& book, const DocumentLayout& layout)
    : TrayPart(&form),
      form_(form),
      book_(book),
      layout_(layout),
      first_(new Edit(this)),
      last_(new Edit(this)),
      grid_(new Grid(QStringLiteral("DBGrid3"), unitChoiceColumns(), this)),
      validate_(form.button(QStringLiteral("Cmdoktranche"), QStringLiteral("Valider &la sélection"),
                            [this] { attempt([this] { choose(); }); })) {
    first_->setObjectName(QStringLiteral("txtimmdeb"));
    last_->setObjectName(QStringLiteral("txtimmfin"));
    for (Edit* edit : {first_, last_}) {
        edit->setMaxLength(Immatriculation::LongestScan);
        edit->setFixedWidth(style::boxWidth(10));
        form_.onLeft(edit, [this] { list(); });
    }
    grid_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* leave =
        form.leaveButton(QStringLiteral("Cmdquittranche"), QStringLiteral("&Fermer la tranche"), [this] { left(); });
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("De l'immat. :"), this));
    row->addWidget(first_);
    row->addWidget(new QLabel(QStringLiteral("à l'immat. :"), this));
    row->addWidget(last_);
    row->addWidget(new QLabel(QStringLiteral("Maj + flèches ou Ctrl + clic pour choisir"), this));
    row->addStretch();
    row->addWidget(validate_);
    row->addWidget(leave);
    auto* column = new QVBoxLayout(this);
    style::nest(*column);
    column->addLayout(row);
    column->addWidget(grid_);
}

void UnitRange::open(const Record& header, const QString& reference, const QString& first) {
    header_ = header;
    reference_ = reference;
    first_->put(Immatriculation::fromText(first).number());
    last_->put({});
    list();
    const RecordModel& units = grid_->rows();
    if (units.rowCount() == 1 && units.text(0, units.columnOf(strproduit.imm_art.name)) == first_->text())
        throw Refusal(QStringLiteral("Aucune autre immatriculation disponible dans le dépôt"), strlivl.fac_imm.name);
    grid_->setFocus();
}

/// The units between the bounds; all of them are chosen once the user gave the last one.
void UnitRange::list() {
    grid_->rows().setRecords({}); // what other bounds gave is not on offer
    const bool bounded = !last_->text().trimmed().isEmpty();
    for (const Edit* edit : {first_, last_})
        if (!edit->text().trimmed().isEmpty() && !Immatriculation::fromText(edit->text()).isValid())
            throw Refusal(QStringLiteral("Immatriculation inconnue"), edit->objectName());
    if (bounded) last_->put(Immatriculation::fromText(last_->text()).number());
    const QString end = bounded ? last_->text() : QStringLiteral("99999999");
    QList<Record> rows;
    for (const Record& unit : unit_rules::candidates(book_, *header_, reference_, first_->text(), end))
        rows.append(unit);
    grid_->rows().setRecords(rows);
    if (bounded)
        grid_->selectAll();
    else
        grid_->selectRow(0);
}

void UnitRange::choose() {
    QStringList units;
    for (const QModelIndex& index : grid_->selectionModel()->selectedRows())
        units.append((*grid_->rows().record(index.row()))[strproduit.imm_art]);
    if (units.isEmpty()) throw Refusal(QStringLiteral("Aucune immat selectionnee"), QStringLiteral("txtimmdeb"));
    units.sort();
    if (!form_.prompt().ask(layout_.confirmRange.arg(units.size()))) return;
    chosen(units);
}

} // namespace molven

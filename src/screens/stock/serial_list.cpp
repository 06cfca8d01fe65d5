#include "screens/stock/serial_list.h"

#include "data/errors.h"
#include "stock/unit_tables.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>

namespace molven {

SerialList::SerialList(QWidget* parent)
    : QWidget(parent),
      count_(new QLabel(this)),
      grid_(new Grid(QStringLiteral("DBGridserie"),
                     {{&strproduit.fou_imm, QStringLiteral("N° série fournisseur"), 300}}, this)) {
    count_->setObjectName(QStringLiteral("lblserie"));
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(count_);
    layout->addWidget(grid_);
    auto* takeOut = new QShortcut(Qt::Key_Delete, grid_);
    takeOut->setContext(Qt::WidgetShortcut);
    connect(takeOut, &QShortcut::activated, this, [this] { removeCurrent(); });
    showRows();
}

void SerialList::add(const QString& serial, const QString& field) {
    if (serials_.contains(serial, Qt::CaseInsensitive))
        throw Refusal(QStringLiteral("N° de série saisi deux fois : ") + serial, field);
    if (isFull()) throw Refusal(QStringLiteral("Il y a déjà %1 N° de série").arg(serials_.size()), field);
    serials_.append(serial);
    showRows();
}

void SerialList::clear() {
    serials_.clear();
    showRows();
}

void SerialList::expect(int units) {
    units_ = units;
    showRows();
}

void SerialList::removeCurrent() {
    const int row = grid_->currentIndex().row();
    if (row < 0 || row >= serials_.size()) return;
    serials_.removeAt(row);
    showRows();
}

void SerialList::showRows() {
    QList<Record> rows;
    for (const QString& serial : serials_) {
        Record row(strproduit);
        row[strproduit.fou_imm] = serial;
        rows.append(row);
    }
    grid_->rows().setRecords(rows);
    if (!rows.isEmpty()) grid_->selectRow(static_cast<int>(rows.size()) - 1);
    count_->setText(QStringLiteral("N° de série saisis : %1 pour %2 produits (un par produit, ou aucun)")
                        .arg(serials_.size())
                        .arg(units_));
    setVisible(units_ > 1 || !serials_.isEmpty());
}

} // namespace molven

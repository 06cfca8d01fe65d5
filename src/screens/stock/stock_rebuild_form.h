#pragma once

#include "ui/form.h"

class QLabel;
class QLayout;

namespace molven {

class DateBox;

/// Rebuilds the stock of the articles that are not followed, and writes their inventory.
class StockRebuildForm : public Form {
public:
    explicit StockRebuildForm(Desk& desk);

private:
    DateBox* addDate(QLayout& row, const QString& name, const QString& caption);
    void rebuild();
    void writeInventory();

    DateBox* first_;
    DateBox* last_;
    QLabel* step_;
};

} // namespace molven

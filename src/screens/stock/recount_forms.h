#pragma once

#include "ui/form.h"

class QLabel;

namespace molven {

class CriteriaPanel;

/// Counts the stock of the articles followed by unit again.
class StockRecountForm : public Form {
public:
    explicit StockRecountForm(Desk& desk);

private:
    void recount();

    QLabel* step_;
};

/// Rebuilds the stock of the articles that are not followed, and writes their inventory.
class StockRebuildForm : public Form {
public:
    explicit StockRebuildForm(Desk& desk);

private:
    void rebuild();
    void writeInventory();

    CriteriaPanel* criteria_;
    QLabel* step_;
};

} // namespace molven

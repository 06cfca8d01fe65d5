#pragma once

#include "sales/replenishment.h"
#include "ui/code_boxes.h"
#include "ui/form.h"

class QLabel;
class QLayout;

namespace molven {

class Grid;
class RecordPanel;

/// What the depots lack against their endowments, the transfer notes that fill them, and what is to be bought.
class ReplenishmentForm : public Form {
public:
    explicit ReplenishmentForm(Desk& desk);

    void shownAgain() override {
        guarded([this] { find(); });
    }

private:
    QLayout* buttons();
    void find();
    QList<QList<Record>> chosenByDepot() const;
    void transfer();
    void exportPurchases();
    void print();

    SalesBook notes_;
    QList<Record> rows_;
    RecordPanel* panel_ = nullptr;
    std::optional<CodeBoxes> codes_;
    Grid* grid_ = nullptr;
    QLabel* count_ = nullptr;
};

} // namespace molven

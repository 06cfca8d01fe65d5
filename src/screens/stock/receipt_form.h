#pragma once

#include "data/database.h"
#include "stock/receipt.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class Grid;
class RecordPanel;

/// Units: receipt of N units of an article, and the look-up of units by number or by reference.
class ReceiptForm : public Form {
public:
    explicit ReceiptForm(Desk& desk);

private:
    QWidget* buildReceipt();
    QWidget* buildUnits();
    void setPickers();
    void showArticle();
    void showByType(const Record& article);
    Receipt typed() const;
    void receive();
    void clearUnit();
    void clearReceipt();

    void listUnits(const Criterion& criterion);
    void findByNumber();
    void findByReference();
    void showUnit(const Record& unit);
    void removeUnit();
    void printLabels();
    const Record& requireUnit() const;

    Workspace workspace_;
    Database molven_, tri_;
    RecordPanel* panel_ = nullptr;
    Edit* quantity_ = nullptr;
    QLabel* created_ = nullptr;
    QLabel* createdLast_ = nullptr;
    Edit* number_ = nullptr;
    Edit* reference_ = nullptr;
    Grid* units_ = nullptr;
    QLabel* place_ = nullptr;
    QLabel* document_ = nullptr;
    QLabel* conformity_ = nullptr;
    Criterion listed_;
    std::optional<Record> unit_;
};

} // namespace molven

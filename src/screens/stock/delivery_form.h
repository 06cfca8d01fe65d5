#pragma once

#include "stock/delivery.h"
#include "ui/code_boxes.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class Grid;
class RecordPanel;
class ScanBox;

/// A whole delivery by scanner: what its units have in common, then unit after unit by its supplier's code, received
/// together.
class DeliveryForm : public Form {
public:
    explicit DeliveryForm(Desk& desk);

protected:
    bool hasUnsavedWork() const override { return !units_.isEmpty(); }
    QPushButton* validation() const override { return validate_; }

private:
    QLayout* buildScan();
    QLayout* buildButtons();
    void clear();
    bool take(const QString& scanned);
    void takeOut(qsizetype row);
    void setPrice();
    void showUnits();
    void showWords();
    Receipt delivery() const;
    void receive();

    Workspace workspace_;
    UnitFiles files_;
    QList<DeliveredUnit> units_;
    RecordPanel* panel_ = nullptr;
    std::optional<CodeBoxes> codes_;
    ScanBox* scan_ = nullptr;
    Edit* price_ = nullptr;
    QLabel* count_ = nullptr;
    Grid* grid_ = nullptr;
    QPushButton* takeBack_ = nullptr;
    QPushButton* validate_ = nullptr;
};

} // namespace molven

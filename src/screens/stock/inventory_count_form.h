#pragma once

#include "stock/inventory_counts.h"
#include "ui/form.h"
#include "ui/record_panel.h"

class QLabel;

namespace molven {

class Grid;

/// The physical inventory of the articles kept by quantity: what is counted of each, in three places. Return keeps the
/// counts of an article and goes on to the next.
class InventoryCountForm : public Form {
public:
    explicit InventoryCountForm(Desk& desk);

protected:
    bool hasUnsavedWork() const override { return shown_ && panel_->differsFrom(*shown_); }

private:
    void list();
    void bringUp(const Record& counts);
    void save();
    void showTotal();

    Workspace workspace_;
    Database molven_;
    Grid* grid_;
    RecordPanel* panel_;
    QLabel* total_;
    std::optional<Record> shown_;
};

} // namespace molven

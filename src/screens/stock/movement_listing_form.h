#pragma once

#include "printing/report.h"
#include "stock/movement_listing.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class CriteriaPanel;
class Grid;

/// Lists the movements of the articles kept by quantity, with their totals; printed by reference.
class MovementListingForm : public Form {
public:
    explicit MovementListingForm(Desk& desk);

private:
    MovementQuery query() const;
    void select();
    void print();
    Report report() const;

    Workspace workspace_;
    MovementFiles files_;
    CriteriaPanel* criteria_;
    Grid* grid_;
    QLabel* totals_;
    MovementQuery asked_;
    QList<Record> found_;
};

} // namespace molven

#pragma once

#include "accounting/commissions.h"
#include "accounting/sales_statistics.h"
#include "ui/selection_form.h"

namespace molven {

/// Commissions of the representatives on the invoices of a period.
class CommissionForm : public SelectionForm {
public:
    explicit CommissionForm(Desk& desk);

private:
    void begin();
    void regenerate();
    void print();
    QList<commissions::Statement> show();
    /// The typed days while every line lies within them, else the days of the first and the last one.
    Period period() const;

    Workspace workspace_;
    sales_statistics::Files files_;
};

} // namespace molven

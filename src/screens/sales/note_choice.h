#pragma once

#include "sales/sales_book.h"
#include "screens/sales/tray_part.h"

namespace molven {

class Edit;
class Form;
class Grid;

/// Chooses the delivery notes that an invoice takes over.
class NoteChoice : public TrayPart {
public:
    NoteChoice(Form& form, SalesBook& book);

    /// Throws Refusal when the client has none to invoice.
    void open(const Record& invoice);

    QPushButton* validation() const override { return validate_; }
    void reread(const Record& invoice) override { invoice_ = invoice; }

private:
    void integrate();

    Form& form_;
    SalesBook& book_;
    std::optional<Record> invoice_;
    Edit* number_;
    Grid* grid_;
    QPushButton* validate_;
};

} // namespace molven

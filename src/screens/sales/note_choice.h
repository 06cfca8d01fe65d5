#pragma once

#include "sales/sales_book.h"

#include <QWidget>

#include <functional>

namespace molven {

class Edit;
class Form;
class Grid;

/// Chooses the delivery notes that an invoice takes over.
class NoteChoice : public QWidget {
public:
    NoteChoice(Form& form, SalesBook& book);

    /// Throws Refusal when the client has none to invoice.
    void open(const Record& invoice);

    std::function<void()> integrated; ///< the invoice has further lines
    std::function<void()> left;

private:
    void integrate();

    Form& form_;
    SalesBook& book_;
    std::optional<Record> invoice_;
    Edit* number_;
    Grid* grid_;
};

} // namespace molven

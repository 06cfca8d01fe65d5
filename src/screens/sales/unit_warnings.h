#pragma once

#include "sales/sales_book.h"

#include <QList>

namespace molven {

class Form;

namespace unit_warnings {

/// Tells which of the units expire soon.
void tellNotes(Form& form, SalesBook& book, const QList<Record>& units);
/// Asks about scrapped and expired units before they leave; false when the user keeps them.
bool areAccepted(Form& form, SalesBook& book, const QList<Record>& units);

} // namespace unit_warnings
} // namespace molven

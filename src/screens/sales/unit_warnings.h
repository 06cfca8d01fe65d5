#pragma once

#include "sales/sales_book.h"

#include <QList>

namespace molven {

class Form;

namespace unit_warnings {

/// Tells which of the units expire soon.
void tellNotes(Form& form, SalesBook& book, const Record& header, const QList<Record>& units);
/// Asks before a scrapped or expired unit leaves, or another client's purchase is credited; false when the user gives
/// it up.
bool areAccepted(Form& form, SalesBook& book, const Record& header, const QList<Record>& units);

} // namespace unit_warnings
} // namespace molven

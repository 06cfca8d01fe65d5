#pragma once

#include "sales/sales_book.h"

namespace molven::scanned_units {

/// The unit that a scanned text names, checked for the document: our label's immatriculation, a supplier's serial, or a
/// supplier's GS1 code with its article (01 or 240), lot (10), expiry (17) and serial (21). Throws Refusal with the
/// first fault; also when the code fits several units that the document may take, since only our label tells which of
/// them is in the hand.
Record find(SalesBook& book, const Record& header, const QString& scanned);

} // namespace molven::scanned_units

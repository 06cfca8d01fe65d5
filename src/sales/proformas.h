#pragma once

#include "sales/sales_book.h"

/// What is the proformas' own among the documents: they touch no unit and no stock, and once accepted become a delivery
/// note.
namespace molven::proformas {

/// Throws Refusal "Proforma transféré !!! impossible" when a delivery note was made of it already.
void requireDeliverable(SalesBook& proformas, const Record& asRead);

/// The delivery note made of a proforma, and the proforma as it is then.
struct Delivered {
    Record proforma;
    Record note;
    bool keptDownPayment = true; ///< false when it exceeds what the note comes to, and was left off it
};
/// Makes a delivery note of today with the proforma's header and its lines of articles that are not followed by unit;
/// their stock moves as if they had been typed. The proforma is closed. One transaction.
Delivered deliver(SalesBook& proformas, const Record& asRead);
/// The proforma of a delivery note that is dropped is open again; inside the caller's transaction.
void release(SalesBook& deliveries, const Record& note);

} // namespace molven::proformas

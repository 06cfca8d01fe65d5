#pragma once

#include "sales/sales_book.h"

namespace molven::integration {

/// The condition on the delivery notes of an invoice's client not yet invoiced.
Criterion openNotesOf(const Record& invoice);
/// A client's delivery notes not yet invoiced, by date. Throws Refusal when there is none.
Recordset openDeliveryNotes(SalesBook& invoices, const Record& invoice);

/// Takes a delivery note over into an invoice: its lines are copied, its units become sold on the invoice, the
/// note is marked transferred; one transaction. Throws Refusal when the note is unknown, another client's,
/// already invoiced, empty or too long.
void integrate(SalesBook& invoices, const Record& invoice, const QString& deliveryNote);

} // namespace molven::integration

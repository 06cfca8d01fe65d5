#pragma once

#include "sales/sales_book.h"

namespace molven::integration {

/// The condition on the delivery notes of an invoice's client not yet invoiced.
Criterion openNotesOf(const Record& invoice);
/// A client's delivery notes not yet invoiced, by date. Throws Refusal when there is none.
Recordset openDeliveryNotes(SalesBook& invoices, const Record& invoice);

/// Takes a delivery note over into an invoice: its lines are copied, its units become sold on the invoice, the
/// note is marked transferred; one transaction. Throws Refusal when the note is unknown, another client's,
/// already invoiced, empty, too long, or holds a unit no longer. `invoice` is the header as its user read it.
void integrate(SalesBook& invoices, const Record& invoice, const QString& deliveryNote);

/// Opens those of the delivery notes again of which the invoice has no line left, and delivers their units again that
/// came back unsold and were not touched since; inside the caller's transaction. Throws Refusal for an archived note.
void release(SalesBook& invoices, const Record& invoice, const QStringList& deliveryNotes);

} // namespace molven::integration

#pragma once

#include "sales/sales_book.h"

namespace molven::documents {

inline const QString HeaderKey = QStringLiteral("ENT");
inline const QString Open = QStringLiteral("N");
inline const QString Transferred = QStringLiteral("T");
inline const QString NotInvoiced = QStringLiteral("000000");

/// The header of a number, typed or stored; nothing when there is none.
std::optional<Record> find(SalesBook& book, const QString& number);
std::optional<Record> last(SalesBook& book);
std::optional<Record> before(SalesBook& book, const QString& number);
std::optional<Record> after(SalesBook& book, const QString& number);

/// A header preset from a client and dated today. Throws Refusal for an unknown client, or one without
/// invoicing authorisation on invoices and credit notes.
Record blank(SalesBook& book, const QString& client);

/// Draws the number and writes the header, in one transaction; answers the header as written. Throws Refusal
/// with the first fault.
Record create(SalesBook& book, Record header, const QStringList& deliveryAddress = {});

/// Rewrites the fields of a header that stay open to change: surgeon, dispatch, voucher, patient.
Record change(SalesBook& book, const Record& header);
/// Rewrites the footer and its totals: discounts, down payment, carriage, exemption, payment mode.
Record changeFooter(SalesBook& book, const Record& header);
/// Computes the totals anew and writes them; inside the caller's transaction.
Record refreshTotals(SalesBook& book, const Record& header);

/// Throws Refusal unless the document may still be changed.
void requireOpen(SalesBook& book, const Record& header);
/// Throws Refusal unless the kind and the state of the document allow its deletion.
void requireDeletable(SalesBook& book, const Record& header);
/// Undoes every line and deletes the document.
void remove(SalesBook& book, const Record& header);
/// Drops a document left without lines, or whose user agrees to drop it for a zero total, whatever its kind.
void abandon(SalesBook& book, const Record& header);

/// The condition on the shown lines of a document.
Criterion linesOf(SalesBook& book, const Record& header);
/// The shown lines of a document, in order.
Recordset lines(SalesBook& book, const Record& header);
/// A client's documents by date. Throws Refusal when there is none.
Recordset ofClient(SalesBook& book, const QString& client);

/// Depot that a client's sales go to: its own, the main one when it has none.
QString depotOf(const Record& client);

} // namespace molven::documents

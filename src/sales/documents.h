#pragma once

#include "sales/changed_elsewhere.h"
#include "sales/sales_book.h"

namespace molven::documents {

inline const QString HeaderKey = QStringLiteral("ENT");
inline const QString Open = QStringLiteral("N");
inline const QString Transferred = QStringLiteral("T");
inline const QString NotInvoiced = QStringLiteral("000000");

/// Invoices and credit notes share one table and one series, so do the two kinds of consignment notes. A document is of
/// the kind it was created as; one of old, without a mode word, is a credit note when its total is negative.
bool isOfKind(const DocumentKind& kind, const Record& header);
/// The condition on the documents of a kind, or of the book's.
Criterion ofKind(const DocumentKind& kind);
Criterion ofKind(SalesBook& book);

/// The document of a number, typed or stored; nothing when there is none. Throws Refusal "Ce N° est ... : voir ..."
/// when the number is that of the other kind.
std::optional<Record> find(SalesBook& book, const QString& number);
/// The neighbours in the series, among the documents of the book's kind.
std::optional<Record> last(SalesBook& book);
std::optional<Record> before(SalesBook& book, const QString& number);
std::optional<Record> after(SalesBook& book, const QString& number);

/// A header without client, dated today, a sale's in the company's currency.
Record blank(SalesBook& book);
/// The same preset from a client. Throws Refusal for an unknown client, or one without
/// invoicing authorisation on invoices and credit notes.
Record blank(SalesBook& book, const QString& client);

/// The euro field of a header in that currency.
QString euroOf(SalesBook& book, const QString& currency);
/// The address (`strbl`) that a new document of the client is delivered to.
Record presetDeliveryAddress(const Record& client);
/// The address that a document is delivered to: a transfer's own, for a sale the one last used for its client.
Record deliveryAddress(SalesBook& book, const Record& header);

/// Draws the number and writes the header, in one transaction; answers the header as written. Throws Refusal
/// with the first fault.
Record create(SalesBook& book, const Record& header, const std::optional<Record>& deliveryAddress = {});

/// A whole new document of these units (immatriculations), header and lines in one transaction. Throws Refusal with the
/// first fault of the header, or the unit that it may not take.
Record createWith(SalesBook& book, const Record& header, const QStringList& units,
                  const std::optional<Record>& deliveryAddress = {});

// `asRead` is always the header as the user last saw it. It names the document itself, not whatever bears its number
// now: these functions throw ChangedElsewhere when the document is gone or its number was drawn again.

/// The document as it is stored now.
Record current(SalesBook& book, const Record& asRead);
/// The same; throws Refusal "Document transféré non modifiable" unless it may still be changed.
Record requireOpen(SalesBook& book, const Record& asRead);

/// Rewrites the fields of a header that its kind leaves open to change; a corrected patient
/// reaches the units that the document holds. Throws ChangedElsewhere when one of them was changed meanwhile.
Record change(SalesBook& book, const Record& header, const Record& asRead);
/// Rewrites the footer and its totals: discounts, down payment, carriage, exemption, payment mode. Throws
/// ChangedElsewhere when one of them was changed meanwhile.
Record changeFooter(SalesBook& book, const Record& header, const Record& asRead);
/// Computes the totals anew, if the kind has any, and writes them after a change of the lines; inside the caller's
/// transaction.
Record refreshTotals(SalesBook& book, const Record& header);
/// Throws Refusal when the down payment exceeds the document's total.
void requireDownPaymentWithin(SalesBook& book, const Record& header);

/// Throws Refusal unless the kind and the state of the document allow its deletion.
void requireDeletable(SalesBook& book, const Record& asRead);
/// The lines of a document, in order.
QList<Record> linesRead(SalesBook& book, const Record& header);
/// Undoes every line and deletes the document. Throws ChangedElsewhere when anything on it, or its lines, was changed
/// since its user read it.
void remove(SalesBook& book, const Record& asRead, const QList<Record>& linesAsRead);
/// Drops a document left without lines, or whose user agrees to drop it for a zero total, whatever its kind. The
/// delivery notes that an invoice had taken over are open again, a transfer note that it renewed may be renewed again.
void abandon(SalesBook& book, const Record& asRead);

/// The documents of this kind whose creation was cut short at this workstation: a header and no line.
QList<Record> unfinished(SalesBook& book);
/// The user keeps a document without lines: it is unfinished no longer.
Record keep(SalesBook& book, const Record& asRead);

/// The condition on the shown lines of a document.
Criterion linesOf(SalesBook& book, const Record& header);
/// The shown lines of a document, in order.
Recordset lines(SalesBook& book, const Record& header);
/// The condition on a client's documents of the book's kind.
Criterion documentsOf(SalesBook& book, const QString& client);
/// A client's documents by date. Throws Refusal when there is none.
Recordset ofClient(SalesBook& book, const QString& client);

/// Depot that a client's sales go to: its own, the main one when it has none.
QString depotOf(const Record& client);

} // namespace molven::documents

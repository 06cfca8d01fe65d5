#pragma once

#include "sales/sales_book.h"

/// What documents do to units. Every function runs inside the caller's transaction; the quantity in stock of the
/// article follows whenever a unit becomes sold or ceases to be.
namespace molven::unit_moves {

/// True while the document, of that kind, is the last that moved the unit.
bool isHeldBy(const DocumentKind& kind, const Record& header, const Record& unit);

/// The unit as a validated line leaves it.
Record moved(SalesBook& book, const Record& header, const Record& line, const Record& unit);
/// A unit as it stands and as it is to be.
struct Changed {
    Record before, after;
};
/// Writes of each unit what differs; those that change alike by one statement.
void store(SalesBook& book, const QList<Changed>& units);
/// What deleting a line does to its unit: a sale's goes back to the main depot unsold, a credit note's to the sale it
/// was taken from, whichever family and file holds it, a transfer's to the depot of departure. A unit that has left a
/// delivery note since is left alone. Throws Refusal for an archived unit, and for one that was taken back, sold again
/// or transferred since.
void undo(SalesBook& book, const Record& header, const Record& line);

/// The units of a delivery note's lines are sold by the invoice. Throws Refusal unless the note still holds them.
void sell(SalesBook& invoices, const Record& invoice, const Record& note, const QList<Record>& lines);
/// The unit of an invoiced note's line is delivered by the note again, unless it was moved since it came back unsold.
void deliverAgain(SalesBook& invoices, const Record& note, const Record& line);

/// Price and reimbursement code of a changed line reach the unit that the document still holds.
void reprice(SalesBook& book, const Record& header, const Record& line);
/// The corrected patient of a document reaches the units it holds; a patient entered on the unit itself stays.
void correctPatient(SalesBook& book, const Record& before, const Record& after);

} // namespace molven::unit_moves

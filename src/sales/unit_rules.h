#pragma once

#include "sales/sales_book.h"
#include "stock/immatriculation.h"

namespace molven::unit_rules {

/// The unit of a typed immatriculation, checked for the document. Throws Refusal with the first fault: unknown,
/// delivered, sold, not sold, or not in a depot the document may take it from.
Record check(SalesBook& book, const Record& header, const QString& typed);
/// The same for a unit that was chosen before and is written now; the refusal of a transfer says which unit it is, and
/// the document or the depot that has it.
Record checkAgain(SalesBook& book, const Record& header, const QString& number);
/// The same of a unit as an earlier line of the document leaves it.
void requireFree(SalesBook& book, const Record& header, const Record& unit);
/// checkAgain() for each of several, which are read together.
QList<Record> checkAll(SalesBook& book, const Record& header, const QStringList& numbers);

/// The condition on the units of an article that the document may take.
Criterion available(SalesBook& book, const Record& header, const QString& reference);
/// The units of an article that the document may take, from one immatriculation to another (both included).
/// Throws Refusal when there is none.
Recordset candidates(SalesBook& book, const Record& header, const QString& reference, const QString& first,
                     const QString& last);

/// What speaks against letting a unit leave, or against taking it back; nothing for one that a transfer brings home.
struct Warnings {
    QStringList
        doubts; ///< reasons to ask before the unit is taken: scrapped, expired, another client's purchase credited
    QStringList notes; ///< told only: expires within a month
};
Warnings warnings(SalesBook& book, const Record& header, const Record& unit);

} // namespace molven::unit_rules

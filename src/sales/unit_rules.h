#pragma once

#include "sales/sales_book.h"
#include "stock/immatriculation.h"

#include <functional>

namespace molven::unit_rules {

/// The unit of a typed immatriculation, checked for the document. Throws Refusal with the first fault: unknown,
/// delivered, sold, not sold, or not in a depot the document may take it from.
Record check(SalesBook& book, const Record& header, const QString& typed);
/// A unit as the line of that place leaves it.
using LeftBy = std::function<Record(qsizetype place, const Record& unit)>;
/// The same for units that were chosen before and are written now, each for one line; the refusal of a transfer says
/// which unit it is, and the document or the depot that has it. One that comes twice is checked again as the line
/// before leaves it.
QList<Record> checkAll(SalesBook& book, const Record& header, const QStringList& numbers, const LeftBy& leftBy = {});

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

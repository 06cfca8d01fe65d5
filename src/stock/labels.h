#pragma once

#include "data/database.h"
#include "shell/company_rules.h"
#include "stock/unit_tables.h"

namespace molven::labels {

/// A range of document numbers as typed. Throws Refusal on an empty or inverted range.
struct NumberRange {
    NumberRange(const QString& first, const QString& last, const QString& firstField);
    QString first; ///< "000000" when the first box is empty
    QString last;  ///< "999999" when the second is empty
};

/// The units moved by the documents of a range and in that state (`state::InStock`, `state::Sold`), by
/// immatriculation. Throws Refusal when there is none.
Recordset select(Database molven, const NumberRange& range, const QString& unitState);

/// What becomes of the labels that wait already.
enum class Waiting { Replaced, Kept };
/// Adds one label a unit, in the given order; answers how many. `molven` holds the reference tables, the units may come
/// from another file.
qint64 fill(Database molven, Database tri, const CompanyRules& rules, const Recordset& units,
            Waiting waiting = Waiting::Replaced);

/// Takes back the label that waits for a unit.
void discard(Database tri, const CompanyRules& rules, const Record& unit);

} // namespace molven::labels

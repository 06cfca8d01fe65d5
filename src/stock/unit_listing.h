#pragma once

#include "shell/company_rules.h"
#include "stock/listing_criteria.h"
#include "stock/unit_tables.h"

namespace molven::unit_listing {

const ListingCriteria& criteria();
/// Captions of the sort orders.
QStringList orders();

/// Throws Refusal for an unknown code or a faulty date. Without the units reminded already when so asked.
Criterion criterion(Database molven, const ListingSelection& selection, bool withoutReminded = false);
Order order(const ListingSelection& selection);

/// Writes today's date as the last selection of the units in the working copy, and as their last reminder when it is
/// one: of those that were printed, not of those that meet the criteria by now. Answers how many.
qint64 markSelected(Database molven, Database tri, bool isReminder);
/// The units of a selection that returnToMainDepot() would move.
Criterion returnable(const Criterion& units);
/// Puts the units in stock of a selection back into the main depot, with its family, and ends their stay with a client;
/// one taken back keeps its credit note. Units at home already and units returned to their supplier stay as they are.
/// Answers how many.
qint64 returnToMainDepot(Database molven, const CompanyRules& rules, const Criterion& units);

} // namespace molven::unit_listing

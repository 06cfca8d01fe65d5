#pragma once

#include "data/database.h"
#include "shell/company_rules.h"
#include "stock/stock_tables.h"

namespace molven::ancillary_sets {

/// Creates an empty physical set of a type at the main depot; answers its serial, 8 digits. Throws Refusal when
/// the type has no component.
QString create(Database ancillaire, const QString& type);

/// Places a unit in stock at the main depot into a set that lies there too. Both files are written in one transaction.
/// Throws Refusal when the unit is not free or the set is out.
void place(Database molven, Database ancillaire, const CompanyRules& rules, const QString& serial,
           const QString& immatriculation);

} // namespace molven::ancillary_sets

#pragma once

#include "reference/article_tables.h"
#include "stock/immatriculation.h"
#include "stock/listing_criteria.h"
#include "stock/unit_tables.h"

namespace molven::stock_listing {

const ListingCriteria& articleCriteria();
const ListingCriteria& unitCriteria();
/// Captions of the sort orders of units.
QStringList unitOrders();

/// The articles in stock that meet every part, by reference. Throws Refusal "Aucun article correspondant à ce critère".
Recordset articles(Database molven, const ListingSelection& selection);

/// The followed articles of a selection with their quantities at the end of that day "yyyymmdd" in place of the present
/// ones: units not invoiced now, or invoiced later, less those received later, archived or not. The file keeps the
/// present ones. Throws Refusal "Aucun article correspondant à ce critère".
QList<Record> articlesAt(UnitFiles files, const ListingSelection& selection, const QString& day);

/// Units not invoiced. Throws Refusal for an unknown depot.
Criterion units(Database molven, const ListingSelection& selection);
Order unitOrder(const ListingSelection& selection);

} // namespace molven::stock_listing

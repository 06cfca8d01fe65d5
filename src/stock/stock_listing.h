#pragma once

#include "data/database.h"
#include "reference/article_tables.h"
#include "stock/unit_tables.h"

namespace molven::stock_listing {

/// Which articles are counted; every part may be empty.
struct ArticleSelection {
    QString reference, firstReference, lastReference;
    QString salesAccount, exportAccount, purchaseAccount, stockAccount;
    QString family, supplier;
    QString followUp; ///< "O" by unit, "K" by movements, empty for both
};

/// The articles in stock that meet every part, by reference. Throws Refusal "Aucun article correspondant à ce critère".
Recordset articles(Database molven, const ArticleSelection& selection);
Criterion criterion(const ArticleSelection& selection);

/// Quantity of a followed article at the end of a day "yyyymmdd": units not invoiced now, or invoiced later, less those
/// received later.
qint64 quantityAt(Database molven, const QString& reference, const QString& day);

/// The followed articles of a selection with their quantities at the end of that day in place of the present ones; the
/// file keeps the present ones. Throws Refusal "Aucun article correspondant à ce critère".
QList<Record> articlesAt(Database molven, const ArticleSelection& selection, const QString& day);

/// Units not invoiced: by immatriculation range, article, depot and depot family, any of them empty.
struct UnitStockSelection {
    QString firstUnit, lastUnit, reference, depot, depotFamily;
    int order = 0; ///< 0 immatriculation, 1 article, 2 depot then article
};
Criterion criterion(const UnitStockSelection& selection);
Order order(const UnitStockSelection& selection);

} // namespace molven::stock_listing

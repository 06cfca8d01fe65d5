#pragma once

#include "stock/movements.h"

/// The physical inventory of the articles kept by quantity: what was counted of each, in up to three places, until it
/// is written as inventory movements.
namespace molven::inventory_counts {

/// An article with its counts. Never in a file: made of the articles.
struct Counts : Table {
    using Table::Table;
    Text art_ref{this, "art_ref", 13};                   ///< reference
    Label art_li1{this, "art_li1", 40};                  ///< label
    Number art_stk{this, "art_stk", Number::Quantity};   ///< stock known
    Number stk1_art{this, "stk1_art", Number::Quantity}; ///< counted in each place
    Number stk2_art{this, "stk2_art", Number::Quantity};
    Number stk3_art{this, "stk3_art", Number::Quantity};
    Number counted{this, "counted", Number::Quantity};       ///< in all; null while nothing is
    Number difference{this, "difference", Number::Quantity}; ///< counted less known; null while nothing is counted
    Text stk_art{this, "stk_art", 1};                        ///< "N" keeps the article out of the inventory
};
inline const Counts strcomptage{"strcomptage"};

/// Every article kept by quantity, by reference.
QList<Record> all(Database molven);
/// Keeps what was counted of an article, as its user read it in `asRead`. Throws Refusal for a quantity that is
/// negative or beyond the hundredth, for an article that is not kept by quantity, and when another workstation counted
/// it meanwhile.
void save(Database molven, const Record& asRead, const Record& counts);

/// Throws Refusal "saisir une date" or "date invalide".
void checkDate(const QString& date);
/// Writes an inventory movement, dated that day "dd/mm/yyyy", of every article that was counted and takes part, and
/// clears their counts; answers how many. Nothing but the movements changes: neither stock nor average price. One
/// transaction. Throws Refusal "Aucun article" when none was counted, and as checkDate() does.
qint64 writeInventory(MovementFiles files, const CompanyRules& rules, const QString& date);

} // namespace molven::inventory_counts

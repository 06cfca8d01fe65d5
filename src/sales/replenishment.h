#pragma once

#include "data/database.h"
#include "reference/code_kinds.h"
#include "sales/sales_book.h"

#include <QHash>

namespace molven {

/// What a depot lacks of an article against its endowment. Never in a file: a list made for each enquiry.
struct Shortages : Table {
    using Table::Table;
    Text rea_dep{this, "rea_dep", 3, codes::Depot, "Ce dépôt n'existe pas"}; ///< depot
    Label rea_nom{this, "rea_nom"};                                          ///< its label
    Text rea_clt{this, "rea_clt", 6};               ///< client whose depot it is; empty when there is none
    Text rea_ref{this, "rea_ref", 13};              ///< article
    Label rea_lib{this, "rea_lib"};                 ///< its label
    Number rea_dot{this, "rea_dot", Number::Whole}; ///< units to hold
    Number rea_stk{this, "rea_stk", Number::Whole}; ///< units held, neither delivered nor sold
    Number rea_man{this, "rea_man", Number::Whole}; ///< lacking
    Number rea_don{this, "rea_don", Number::Whole}; ///< of these, what the main depot gives
    Number rea_ach{this, "rea_ach", Number::Whole}; ///< and what is to be bought
};
inline const Shortages strreassort{"strreassort"};

/// What is to be bought of an article for all depots; in no file either.
struct Purchases : Table {
    using Table::Table;
    Text ach_fou{this, "ach_fou", 6};               ///< supplier
    Label ach_nom{this, "ach_nom"};                 ///< its name
    Text ach_rfo{this, "ach_rfo", 20};              ///< the supplier's reference
    Text ach_ref{this, "ach_ref", 13};              ///< article
    Label ach_lib{this, "ach_lib"};                 ///< its label
    Number ach_qte{this, "ach_qte", Number::Whole}; ///< units
};
inline const Purchases strachat{"strachat"};

namespace replenishment {

/// The shortages of every depot that has endowments, or of one, by depot and article. The main depot gives to the
/// depots in their order what it has in stock, neither expired nor scrapped.
QList<Record> shortages(Database molven, const QString& depot = {});
/// Units lacking in each depot that is under its endowment, counted without asking what the main depot has.
QHash<QString, qint64> lackingByDepot(Database molven);
/// What remains to be bought, by supplier and article.
QList<Record> purchases(Database molven, const QList<Record>& shortages);

/// Writes the transfer note that gives one depot what these shortages say, earliest expiry first, in one transaction;
/// answers its header. What one note cannot hold stays lacking. Throws Refusal when the depot lacks less by now or the
/// main depot has less, when nothing can be given, or no client has the depot.
Record write(SalesBook& notes, const QList<Record>& shortagesOfDepot);

} // namespace replenishment
} // namespace molven

#pragma once

#include "stock/movements.h"

namespace molven {

/// What a list of movements is asked for.
struct MovementQuery {
    QString reference; ///< "VSP*" for all that begin so, "*" for all
    QString from, to;  ///< "dd/mm/yyyy", both included; empty for no bound
    QString kind;      ///< empty for all
};

/// The movements of a selection with their articles' labels. Never in a file: a list made for each enquiry.
struct ListedMovements : Table {
    using Table::Table;
    Text ref_stk{this, "ref_stk", 13};                 ///< article
    Label art_li1{this, "art_li1", 40};                ///< its label
    Text dat_stk{this, "dat_stk", 10};                 ///< date
    Text tri_stk{this, "tri_stk", 8};                  ///< its sort key
    Text eta_stk{this, "eta_stk", 1};                  ///< kind
    Number qte_stk{this, "qte_stk", Number::Quantity}; ///< quantity
    Number pri_stk{this, "pri_stk", Number::Money};    ///< unit purchase price
    Label com_stk{this, "com_stk", 60};                ///< comment
};
inline const ListedMovements strlistemvt{"strlistemvt"};

/// Quantities of movements by kind.
struct MovementTotals {
    Decimal inventory, entries, exits;

    void add(const Record& listed);
    Decimal balance() const { return entries - exits; }
};

namespace movement_listing {

/// The movements by reference, then by date. Throws Refusal "Veuillez saisir une référence", "Référence Inconnue",
/// "date début non valide", "date fin non valide", "date fin < date début".
QList<Record> find(MovementFiles files, const MovementQuery& query);
/// "Référence : VSP015   du : 01/01/2026   au : 31/03/2026   Entrées": what was asked.
QString words(const MovementQuery& query);

} // namespace movement_listing
} // namespace molven

#pragma once

#include "data/database.h"
#include "reference/code_kinds.h"
#include "stock/ancillary_sets.h"
#include "stock/units.h"

namespace molven {

/// Where each ancillary set stands, one row a set. Never in a file: a list made for each look.
struct SetStates : Table {
    using Table::Table;
    Text stk_anc_imm{this, "stk_anc_imm", 8};    ///< serial
    Text stk_anc_code{this, "stk_anc_code", 13}; ///< type, and its label
    Label stk_anc_lib{this, "stk_anc_lib", 40};
    Text stk_num_dep{this, "stk_num_dep", 6}; ///< "A01", or the client's code
    Label stk_nom_dep{this, "stk_nom_dep", 40};
    Text stk_dat_vte{this, "stk_dat_vte", 10}; ///< since when, empty for a set that never left
    Text stk_num_vte{this, "stk_num_vte", 6};  ///< transfer note that brought it there
    Number eta_nb{this, "eta_nb", Number::Whole};
    Number eta_tot{this, "eta_tot", Number::Whole}; ///< units it has, and units a whole one has
    Label eta_com{this, "eta_com"};                 ///< "Complet", or what it lacks
    Text eta_per{this, "eta_per", 7};               ///< earliest expiry "mm/yyyy" of its units
};
inline const SetStates stretatanc{"stretatanc"};

/// What lies in one set, one row a unit. Never in a file.
struct SetContents : Table {
    using Table::Table;
    Text stk_imm_art{this, "stk_imm_art", 8};
    Text stk_ref_art{this, "stk_ref_art", 13};
    Label stk_lib_art{this, "stk_lib_art", 40};
    Text lot_art{this, "lot_art", 20};
    Text dat_per{this, "dat_per", 7};
    Label eta_ret{this, "eta_ret", 10}; ///< of a set coming back: "Au retour" or "Utilisée"
};
inline const SetContents strcontenu{"strcontenu"};

namespace set_overview {

/// The units of a set, in the order of its lines.
QList<Record> contents(Database molven, Database ancillaire, const QString& serial);

/// The sets of a type, of all types when it is empty, by serial.
QList<Record> rows(Database molven, Database ancillaire, const QString& type = {});
/// What lacks in a set or is one too many, in words: "manque 2 CFG001, 1 de trop : CFG002"; empty when nothing does.
QString differences(const QList<ancillary_sets::Component>& components, qint64 units);

units::Expiry expiryOf(const Record& row);
bool isComplete(const Record& row);
/// Those first of which a unit is past its date or soon will be, then those that are not complete; by expiry within.
QList<Record> urgentFirst(QList<Record> rows);

} // namespace set_overview
} // namespace molven

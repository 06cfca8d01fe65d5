#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// What each depot should hold of each article.
struct Endowments : Table {
    using Table::Table;
    Text dot_dep{this, "dot_dep", 3, codes::Depot, "Ce dépôt n'existe pas"};       ///< depot
    Text dot_ref{this, "dot_ref", 13, codes::Article, "Cet article n'existe pas"}; ///< article reference
    Label dot_lib{this, "dot_lib", 40};                                            ///< its label
    Number dot_qte{this, "dot_qte", Number::Whole};                                ///< units to hold
    Trail trail{this, {dot_dep, dot_ref}};
    Index by_depot{this, {dot_dep, dot_ref}, Uniqueness::Unique};
    Index by_article{this, {dot_ref}};
};
inline const Endowments strdotation{"strdotation"};

/// Counts of depots, one record a count; several workstations may read into one.
struct DepotCounts : Table {
    using Table::Table;
    Text inv_no{this, "inv_no", 6};                                            ///< number "000000"
    Text inv_dep{this, "inv_dep", 3, codes::Depot, "Ce dépôt n'existe pas"};   ///< depot counted
    Text inv_clt{this, "inv_clt", 6, codes::Client, "Ce client n'existe pas"}; ///< client who signs; may be empty
    Text inv_eta{this, "inv_eta", 1};                                          ///< N open, C closed
    Text inv_dat{this, "inv_dat", 10};                                         ///< day it was begun "dd/mm/yyyy"
    Text inv_tri{this, "inv_tri", 8};                                          ///< its sort key
    Text inv_clo{this, "inv_clo", 10};                                         ///< day it was closed
    Label inv_par{this, "inv_par", 40};                                        ///< who counted
    Number inv_moi{this, "inv_moi", Number::Whole}; ///< months within which an expiry is told
    Trail trail{this, {inv_no}};
    Index by_number{this, {inv_no}, Uniqueness::Unique};
    Index by_depot{this, {inv_dep, inv_eta}};
};
inline const DepotCounts strinvdep{"strinvdep"};

/// Units of a count: those read and, once it is closed, those that should have been.
struct CountedUnits : Table {
    using Table::Table;
    Text lig_no{this, "lig_no", 6};                                                ///< number of the count
    Text lig_imm{this, "lig_imm", 8};                                              ///< immatriculation
    Text lig_ref{this, "lig_ref", 13, codes::Article, "Cet article n'existe pas"}; ///< article reference
    Label lig_lib{this, "lig_lib", 40};                                            ///< its label
    Text lig_lot{this, "lig_lot", 20};                                             ///< lot
    Text lig_ser{this, "lig_ser", 30};                                             ///< supplier's serial
    Text lig_per{this, "lig_per", 7};                                              ///< expiry "mm/yyyy"
    Number lig_lec{this, "lig_lec", Number::Whole};                                ///< times read
    Text lig_con{this, "lig_con", 1};   ///< verdict of the closing, see depot_counts.h; empty before
    Text lig_tes{this, "lig_tes", 1};   ///< the unit when it was read, after closing when that was: state,
    Text lig_dep{this, "lig_dep", 6};   ///< depot,
    Text lig_vte{this, "lig_vte", 6};   ///< last document
    Text lig_tri{this, "lig_tri", 8};   ///< and its day
    Text lig_jou{this, "lig_jou", 17};  ///< moment of the first reading "yyyymmdd hh:mm:ss"
    Label lig_pos{this, "lig_pos", 40}; ///< workstation of the first reading
    Text lig_mod{this, "lig_mod", 3};   ///< mode word of the document that settled it,
    Text lig_doc{this, "lig_doc", 6};   ///< and its number; empty while none did
    Trail trail{this, {lig_no, lig_imm}};
    Index by_unit{this, {lig_no, lig_imm}, Uniqueness::Unique};
    Index by_immatriculation{this, {lig_imm}};
};
inline const CountedUnits strinvlig{"strinvlig"};

/// The same as they are shown, in no file.
struct CountRows : CountedUnits {
    using CountedUnits::CountedUnits;
    Label lig_sit{this, "lig_sit"};   ///< where a unit is by the books, in words, and the document that settled it
    Text lig_coc{this, "lig_coc", 1}; ///< O when the user ticked it
};
inline const CountRows strconstat{"strconstat"};

} // namespace molven

#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

namespace codes {
extern const CodeKind SetType;
} // namespace codes

/// Types of ancillary sets, in ancillaire.mdb.
struct AncillaryTypes : Table {
    using Table::Table;
    Text anc_code{this, "anc_code", 13};               ///< code, an article reference
    Label anc_lib{this, "anc_lib", 40};                ///< label
    Number anc_stk{this, "anc_stk", Number::Quantity}; ///< number of sets
    Text anc_depot{this, "anc_depot", 3};
    Text anc_util{this, "anc_util", 10};
    Text anc_tva{this, "anc_tva", 1, codes::VatCode, "Code TVA inconnu"}; ///< VAT code
    Number anc_ht{this, "anc_ht", Number::Money};                         ///< price without VAT
    Number anc_ttc{this, "anc_ttc", Number::Money};                       ///< price with VAT
    Number anc_pa{this, "anc_pa", Number::Money};                         ///< purchase price
    Text anc_cpt{this, "anc_cpt", 9, codes::Account};                     ///< accounts: sales, export, purchases, stock
    Text anc_cpte{this, "anc_cpte", 9, codes::Account};
    Text anc_cpta{this, "anc_cpta", 9, codes::Account};
    Text anc_cpts{this, "anc_cpts", 9, codes::Account};
    Text anc_tar{this, "anc_tar", 1}; ///< price basis
    Trail trail{this, {anc_code}};
    KeptFields kept{this, {anc_stk}};
    Index by_code{this, {anc_code}, Uniqueness::Unique};
};
inline const AncillaryTypes strancillaire{"strancillaire"};

/// Composition of the types of sets.
struct AncillaryComponents : Table {
    using Table::Table;
    Text anc_code{this, "anc_code", 13, codes::SetType, "Cet ancillaire n'existe pas"}; ///< type of set
    Text anc_lg{this, "anc_lg", 3};                                                     ///< line; "000" heads the type
    Text anc_article{this, "anc_article", 13, codes::Article, "Cet article n'existe pas"}; ///< component reference
    Label anc_libart{this, "anc_libart", 40};                                              ///< its label
    Number anc_qte{this, "anc_qte", Number::Quantity}; ///< quantity; on line "000" the units of the whole set
    Trail trail{this, {anc_code, anc_lg}};
    Index by_line{this, {anc_code, anc_lg}, Uniqueness::Unique};
};
inline const AncillaryComponents strnomenclature{"strnomenclature"};

/// Physical sets: a header line and a line a unit.
struct AncillarySets : Table {
    using Table::Table;
    Text stk_anc_imm{this, "stk_anc_imm", 8};                                                   ///< serial of the set
    Text stk_anc_code{this, "stk_anc_code", 13, codes::SetType, "Cet ancillaire n'existe pas"}; ///< type
    Label stk_anc_lib{this, "stk_anc_lib", 40};                                                 ///< its label
    Text stk_anc_imm_lg{this, "stk_anc_imm_lg", 3}; ///< line; "000" heads the set
    Text stk_ref_art{this, "stk_ref_art", 13, codes::Article,
                     "Cet article n'existe pas"}; ///< unit: reference, label, immatriculation
    Label stk_lib_art{this, "stk_lib_art", 40};
    Text stk_imm_art{this, "stk_imm_art", 8};
    Text stk_num_dep{this, "stk_num_dep", 6};   ///< "A01", or the client's code
    Label stk_nom_dep{this, "stk_nom_dep", 40}; ///< client's name
    Text stk_tes_vte{this, "stk_tes_vte", 1};   ///< N
    Text stk_num_vte{this, "stk_num_vte", 6};   ///< transfer note
    Text stk_dat_vte{this, "stk_dat_vte", 10};  ///< its date
    Text stk_tri_vte{this, "stk_tri_vte", 8};
    Text stk_clt_vte{this, "stk_clt_vte", 6, codes::Client, "Client inconnu"}; ///< its client
    Trail trail{this, {stk_anc_imm, stk_anc_imm_lg}};
    Index by_line{this, {stk_anc_imm, stk_anc_imm_lg}};
    Index by_unit{this, {stk_imm_art}};
};
inline const AncillarySets strstock{"strstock"};

/// Movements of the articles kept by quantity.
struct StockMovements : Table {
    using Table::Table;
    Text ref_stk{this, "ref_stk", 13, codes::Article, "Cet article n'existe pas"}; ///< article reference
    Text dat_stk{this, "dat_stk", 10};                                             ///< date "dd/mm/yyyy"
    Text tri_stk{this, "tri_stk", 8};                                              ///< its sort key
    Text eta_stk{this, "eta_stk", 1};                                              ///< E entry, S exit, I inventory
    Number qte_stk{this, "qte_stk", Number::Quantity};                             ///< quantity, positive
    Number pri_stk{this, "pri_stk", Number::Money};                                ///< unit purchase price
    Label com_stk{this, "com_stk", 60};                                            ///< comment
    Label memo_stk{this, "memo_stk"};                                              ///< memo
    Text col_stk{this, "col_stk", 10};                                             ///< packing, of inventories
    Text uid_stk{this, "uid_stk", 32}; ///< drawn at creation: tells twins apart; empty on movements of old
    Trail trail{this, {ref_stk, tri_stk, uid_stk}};
    Index by_article{this, {ref_stk, tri_stk}};
    Index by_date{this, {tri_stk, ref_stk, eta_stk}};
};
inline const StockMovements strmvtstk{"strmvtstk"};

/// Quantities sold in a period, work table of the stock rebuild, in tristk.mdb.
struct SoldQuantities : Table {
    using Table::Table;
    Text fac_ref{this, "fac_ref", 13};                 ///< article reference
    Number fac_qte{this, "fac_qte", Number::Quantity}; ///< quantity
    Text fac_clt{this, "fac_clt", 6};                  ///< client
    Text fac_datf{this, "fac_datf", 10};               ///< invoice date
    Text fac_date{this, "fac_date", 10};               ///< delivery note date
    Text tri_datf{this, "tri_datf", 8};                ///< their sort keys
    Text fac_tri{this, "fac_tri", 8};
    Index by_article{this, {fac_ref}};
};
inline const SoldQuantities strtristk{"strtristk"};

} // namespace molven

#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

namespace codes {
extern const CodeKind CauseOfUnit;   ///< by `fab_con`
extern const CodeKind CauseOfChange; ///< by `conf_typ`
extern const CodeKind DepotOfUnit;   ///< by `tes_vte`: a set may lie under its client's code
extern const CodeKind HolderOfUnit;  ///< by `num_dep`: of a unit returned it is the supplier
extern const CodeKind SetType;
} // namespace codes

/// Implant units, one record each: from receipt to the patient.
struct ProductUnits : Table {
    using Table::Table;
    Text imm_art{this, "imm_art", 8}; ///< immatriculation: YYMM and a 4-digit sequence
    Text ref_art{this, "ref_art", 13, codes::Article, "Cet article n'existe pas"};    ///< article reference
    Text num_cde{this, "num_cde", 20};                                                ///< supplier order number
    Text dat_cde{this, "dat_cde", 10};                                                ///< its date "dd/mm/yyyy"
    Text tri_cde{this, "tri_cde", 8};                                                 ///< its sort key "yyyymmdd"
    Text fou_cde{this, "fou_cde", 6, codes::Supplier, "Ce fournisseur n'existe pas"}; ///< supplier code
    Text num_liv{this, "num_liv", 20};                                                ///< supplier delivery note number
    Text dat_liv{this, "dat_liv", 10};                                                ///< receipt date
    Text tri_liv{this, "tri_liv", 8};
    Text dat_dlv{this, "dat_dlv", 10}; ///< planned delivery date
    Text tri_dlv{this, "tri_dlv", 8};
    Text pro_typ{this, "pro_typ", 1};  ///< F manufactured, G graft, N trade goods
    Text ino_cer{this, "ino_cer", 20}; ///< first certificate (graft: tissue)
    Text pee_cer{this, "pee_cer", 20}; ///< second certificate (graft: donor)
    Text reg_art{this, "reg_art", 20}; ///< register entry (graft: removal date)
    Text pie_art{this, "pie_art", 3};  ///< piece number
    Text nof_art{this, "nof_art", 20}; ///< manufacturing order
    Text lot_art{this, "lot_art", 20}; ///< supplier lot
    Text fab_con{this, "fab_con", 1};  ///< conformity: O, X reworked, Y derogated, Z scrapped
    Text fab_cau{this, "fab_cau", 3, codes::CauseOfUnit,
                 "Cette cause n'existe pas"}; ///< cause, in the list of the same letter
    Text num_ste{this, "num_ste", 20};        ///< sterilisation batch
    Text dat_ste{this, "dat_ste", 7};         ///< sterilisation date "mm/yyyy"
    Text dat_per{this, "dat_per", 7};         ///< expiry date "mm/yyyy"
    Text ind_ste{this, "ind_ste", 3};         ///< sterilisation index
    Text num_dep{this, "num_dep", 6, codes::DepotOfUnit,
                 "Ce dépôt n'existe pas"}; ///< depot; "001" main, "A01" in a set, "XXX" returned to supplier
    Text clt_dep{this, "clt_dep", 6, codes::HolderOfUnit, "Ce code n'existe pas"}; ///< client of the depot
    Label nom_dep{this, "nom_dep", 40};                                            ///< its name
    Text nbl_dep{this, "nbl_dep", 6};         ///< document of the last depot movement, or "AVOIR"
    Text stk_anc_imm{this, "stk_anc_imm", 8}; ///< serial of the ancillary set holding the unit
    Text stk_anc_cod{this, "stk_anc_cod", 13, codes::SetType, "Cet ancillaire n'existe pas"}; ///< its code
    Text fam_dep{this, "fam_dep", 3, codes::DepotFamily, "Cette famille n'existe pas"};       ///< depot family
    Text tes_vte{this, "tes_vte", 1}; ///< N in stock, L delivered, O sold, A inside a set
    Text num_vte{this, "num_vte", 6}; ///< last document that moved the unit
    Text clt_vte{this, "clt_vte", 6, codes::HolderOfUnit, "Ce code n'existe pas"}; ///< its client
    Label ref_vte{this, "ref_vte", 20};                                            ///< its reference
    Text dat_vte{this, "dat_vte", 10};                                             ///< its date
    Text tri_vte{this, "tri_vte", 8};
    Number pro_pac{this, "pro_pac", Number::Money};     ///< purchase price, company currency
    Number pro_vte{this, "pro_vte", Number::Money};     ///< sale price, in the basis of pro_tar
    Label pro_li1{this, "pro_li1", 40};                 ///< article label at receipt
    Text pro_tip{this, "pro_tip", 13, codes::TipsCode}; ///< TIPS code
    Text pro_lpp{this, "pro_lpp", 13, codes::LppCode};  ///< LPP code
    Text pro_nho{this, "pro_nho", 20};                  ///< approval number
    Text pro_tar{this, "pro_tar", 20}; ///< price basis: H without VAT, else with; on exchange files the line's amount
    Text pro_mon{this, "pro_mon", 3, codes::Currency};                       ///< currency of the prices
    Label reg_pat{this, "reg_pat", 40};                                      ///< patient
    Text reg_clt{this, "reg_clt", 6, codes::Client, "Ce code n'existe pas"}; ///< hospital of the implantation
    Text reg_dat{this, "reg_dat", 10};                                       ///< date of implantation
    Text fou_imm{this, "fou_imm", 30};                                       ///< supplier's serial number
    Text fou_ref{this, "fou_ref", 20};                                       ///< supplier's reference
    Text pro_ann{this, "pro_ann", 2};                                        ///< century of the immatriculation
    Text num_conf{this, "num_conf", 10};                                     ///< last conformity record
    Text dat_rel{this, "dat_rel", 8};  ///< last reminder "yyyymmdd", "00000000" when none
    Text dat_sel{this, "dat_sel", 8};  ///< last selection in a listing
    Text dat_cre{this, "dat_cre", 8};  ///< creation date "yyyymmdd"
    Text mot_pas{this, "mot_pas", 20}; ///< operator who created it
    Text pro_ean{this, "pro_ean", 13}; ///< EAN code
    Text pro_ang{this, "pro_ang", 40}; ///< its companion

    Trail trail{this, {pro_ann, imm_art}};
    KeptFields kept{this, {dat_rel, dat_sel, fam_dep}};
    Index by_immatriculation{this, {pro_ann, imm_art}, Uniqueness::Unique};
    Index by_reference{this, {ref_art, tes_vte, imm_art}};
    Index by_document{this, {num_vte, tes_vte, imm_art}};
    // what follows the immatriculation spares listings, counts and replenishment reading the units
    Index by_depot{this, {num_dep, ref_art, imm_art, dat_per, tes_vte, fab_con}};
    Index by_patient{this, {reg_pat, tes_vte}};
    Index by_lot{this, {lot_art}};
    Index by_supplier_serial{this, {fou_imm}};
    Index by_supplier_reference{this, {fou_ref, fou_imm}};
    Index by_expiry{this, {dat_per, tes_vte, num_dep}}; // what expires is counted without reading units
};
inline const ProductUnits strproduit{"strproduit"};
/// Working copy of a selection of units, in tri.mdb, and exchange file of units, in tripro.mdb.
inline const ProductUnits tripro{"tripro"};

/// Conformity history of the units, one record a change.
struct ConformityChanges : Table {
    using Table::Table;
    Text conf_imm{this, "conf_imm", 8};                                                   ///< immatriculation
    Text conf_ann{this, "conf_ann", 2};                                                   ///< its century
    Label conf_li1{this, "conf_li1", 40};                                                 ///< article label
    Text conf_typ{this, "conf_typ", 1};                                                   ///< new conformity
    Text conf_cau{this, "conf_cau", 3, codes::CauseOfChange, "Cette cause n'existe pas"}; ///< cause
    Label conf_lca{this, "conf_lca", 40};                                                 ///< its label
    Text conf_date{this, "conf_date", 10};                                                ///< date "dd/mm/yyyy"
    Text conf_dat{this, "conf_dat", 8};                                                   ///< its sort key
    Text conf_lib{this, "conf_lib", 20}; ///< "Conforme", "Retouché", "Dérogé" or "Rebuté"
    Trail trail{this, {conf_ann, conf_imm}};
    Index by_unit{this, {conf_imm, conf_ann}};
};
inline const ConformityChanges strconform{"strconform"};

/// Labels waiting to be printed, in tri.mdb, one record a label.
struct Labels : Table {
    using Table::Table;
    Text e_typ{this, "e_typ", 1};     ///< unit type
    Text e_imm{this, "e_imm", 30};    ///< immatriculation, or the supplier's serial
    Text e_ref{this, "e_ref", 20};    ///< reference, or the supplier's
    Text e_tip{this, "e_tip", 13};    ///< TIPS code
    Label e_ltip{this, "e_ltip", 80}; ///< its label
    Text e_lpp{this, "e_lpp", 13};    ///< LPP code
    Label e_llpp{this, "e_llpp", 80}; ///< its label
    Text e_nho{this, "e_nho", 20};    ///< approval number
    Text e_ttc{this, "e_ttc", 20};    ///< sale price in the unit's currency, formatted
    Text e_euro{this, "e_euro", 20};  ///< sale price in euros, formatted
    Text e_nste{this, "e_nste", 20};  ///< sterilisation batch
    Text e_dste{this, "e_dste", 7};   ///< sterilisation date
    Text e_dper{this, "e_dper", 7};   ///< expiry date
    Text n_lot{this, "n_lot", 20};    ///< lot
    Text f_ino{this, "f_ino", 20};    ///< manufactured: certificates, register, piece
    Text f_pee{this, "f_pee", 20};
    Text f_reg{this, "f_reg", 20};
    Text f_pie{this, "f_pie", 3};
    Text g_tis{this, "g_tis", 20}; ///< graft: tissue, donor, removal date
    Text g_don{this, "g_don", 20};
    Text g_dpr{this, "g_dpr", 20};
    Label e_li1{this, "e_li1", 40}; ///< designation
    Label e_li2{this, "e_li2", 40};
    Text e_ht{this, "e_ht", 20};     ///< article price without VAT
    Text e_res{this, "e_res", 30};   ///< liability tariff
    Text e_ori{this, "e_ori", 40};   ///< origin in words
    Text e_lpp2{this, "e_lpp2", 13}; ///< further LPP codes of an article that has several, with their labels
    Label e_llpp2{this, "e_llpp2", 80};
    Text e_lpp3{this, "e_lpp3", 13};
    Label e_llpp3{this, "e_llpp3", 80};
};
inline const Labels etiq{"etiq"};

} // namespace molven

#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// Articles: every reference sold or stocked.
struct Articles : Table {
    using Table::Table;
    Text art_ref{this, "art_ref", 13};   ///< reference, the key
    Text art_rfou{this, "art_rfou", 20}; ///< supplier's reference
    Text art_cpt{this, "art_cpt", 9, codes::Account,
                 "Cette imputation comptable VENTE n'existe pas"}; ///< sales account
    Text art_cpte{this, "art_cpte", 9, codes::Account,
                  "Cette imputation comptable VENTE EXPORT n'existe pas"}; ///< export sales account
    Text art_cpta{this, "art_cpta", 9, codes::Account,
                  "Cette imputation comptable ACHAT n'existe pas"}; ///< purchase account
    Text art_cpts{this, "art_cpts", 9, codes::Account,
                  "Cette imputation comptable STOCK n'existe pas"};          ///< stock account
    Label art_li1{this, "art_li1", 40};                                      ///< first label, upper case
    Label art_li2{this, "art_li2", 40};                                      ///< second label, upper case
    Label art_lib3{this, "art_lib3", 40};                                    ///< third label, upper case
    Text art_tip{this, "art_tip", 13, codes::TipsCode, "Code TIPS inconnu"}; ///< TIPS code
    Text art_lpp{this, "art_lpp", 13, codes::LppCode, "Code LPP inconnu"}; ///< LPP code, "MULTI" when there are several
    Text art_typ{this, "art_typ", 1, codes::ArticleType,
                 "Taper F / N ou G !!"};                               ///< F manufactured, N trade goods, G graft
    Text art_hom{this, "art_hom", 1, codes::YesNo, "Taper O ou N !!"}; ///< subject to approval, O/N
    Text art_ste{this, "art_ste", 1, codes::YesNo, "Taper O ou N !!"}; ///< subject to sterilisation, O/N
    Text art_fam{this, "art_fam", 3, codes::FamilyOfArticle,
                 "Famille inconnue"}; ///< family (list A, or W for ancillary sets)
    Text art_sfam{this, "art_sfam", 3, codes::SubFamily, "Sous-famille inconnue"};    ///< sub-family (list S)
    Text art_fou{this, "art_fou", 6, codes::Supplier, "Ce fournisseur n'existe pas"}; ///< supplier code
    Text art_nho{this, "art_nho", 20};                                                ///< approval (or CE) number
    Text art_tva{this, "art_tva", 1, codes::VatCode, "Code TVA inconnu"};             ///< VAT code
    Number art_pv1{this, "art_pv1", Number::Money};                                   ///< sale price without VAT
    Number art_ttc{this, "art_ttc", Number::Money};                                   ///< sale price with VAT
    Text art_res{this, "art_res", 20};                                      ///< liability tariff, an amount or words
    Text art_tar{this, "art_tar", 1, codes::PriceBasis, "Taper H ou T !!"}; ///< price basis: H without VAT, else with
    Text art_rem{this, "art_rem", 3};                                       ///< discount category
    Number art_pam{this, "art_pam", Number::Money};                         ///< average purchase price
    Number art_dpa{this, "art_dpa", Number::Money};                         ///< last purchase price
    Number art_stk{this, "art_stk", Number::Quantity};                      ///< quantity in stock
    Number art_min{this, "art_min", Number::Quantity};                      ///< minimum stock
    Number art_cdec{this, "art_cdec", Number::Quantity};                    ///< quantity on clients' orders
    Number art_cdef{this, "art_cdef", Number::Quantity};                    ///< quantity on suppliers' orders
    Text art_aig{this, "art_aig", 1}; ///< follow-up: O by unit, K by movements, N not stocked, T text
    Text art_crp{this, "art_crp", 3}; ///< commission category
    Text art_ori{this, "art_ori", 1, codes::Origin,
                 "Origine incorrecte"}; ///< origin of grafts: H human, A animal, else neither
    Text art_gpie{this, "art_gpie", 1, codes::YesNo, "Taper O ou N !!"}; ///< pieces counted, O/N
    Label art_memo{this, "art_memo"};                                    ///< free memo
    Text art_cat{this, "art_cat", 1, codes::Reimbursement,
                 "Taper T ou L !!"};                                   ///< reimbursement category: T TIPS, L LPP
    Text art_ean{this, "art_ean", 13};                                 ///< EAN-13 code
    Text art_ang{this, "art_ang", 40};                                 ///< companion of the EAN (English label)
    Text art_anc{this, "art_anc", 1};                                  ///< kind: A article, T text, X ancillary set
    Text stk_art{this, "stk_art", 1, codes::YesNo, "Taper O ou N !!"}; ///< "N" keeps it out of the physical inventory
    Number stk1_art{this, "stk1_art", Number::Quantity}; ///< quantities counted in up to three places, until the
    Number stk2_art{this, "stk2_art", Number::Quantity}; ///< inventory is written
    Number stk3_art{this, "stk3_art", Number::Quantity};
    Text col_art{this, "col_art", 10};                ///< packing
    Number ta17_art{this, "ta17_art", Number::Money}; ///< price of the inventory, where the company keeps one

    Trail trail{this, {art_ref}};
    KeptFields kept{
        this,
        {art_stk, art_pam, art_dpa, art_cdec, art_cdef, stk_art, stk1_art, stk2_art, stk3_art, col_art, ta17_art}};
    Index by_reference{this, {art_ref}, Uniqueness::Unique};
    Index by_label{this, {art_li1}};
    Index by_supplier_reference{this, {art_rfou}};
    Index by_ean{this, {art_ean}};
    Index by_family{this, {art_fam}};
    Index by_lpp{this, {art_lpp}};
    Index by_tips{this, {art_tip}};
    Index by_follow_up{this, {art_aig, art_ref}};
};
inline const Articles strarticle{"strarticle"};

/// The LPP codes of an article that has several.
struct ArticleLppCodes : Table {
    using Table::Table;
    Text lpp_ref{this, "lpp_ref", 13, codes::Article, "Cet article n'existe pas"}; ///< article reference
    Text lpp_1{this, "lpp_1", 13, codes::LppCode, "Code LPP inconnu"};
    Text lpp_2{this, "lpp_2", 13, codes::LppCode, "Code LPP inconnu"};
    Text lpp_3{this, "lpp_3", 13, codes::LppCode, "Code LPP inconnu"};
    Trail trail{this, {lpp_ref}};
    Index by_reference{this, {lpp_ref}, Uniqueness::Unique};
};
inline const ArticleLppCodes strartlpp{"strartlpp"};

/// Pool of EAN codes, in gencode.mdb.
struct EanPool : Table {
    using Table::Table;
    Text ean_code{this, "ean_code", 13}; ///< 13 digits
    Text ean_art{this, "ean_art", 13, codes::Article,
                 "Cet article n'existe pas"}; ///< article that took it, empty while free
    Trail trail{this, {ean_code}};
    Index by_code{this, {ean_code}, Uniqueness::Unique};
    Index by_article{this, {ean_art, ean_code}};
};
inline const EanPool strgencode{"strgencode"};

} // namespace molven

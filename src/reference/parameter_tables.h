#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// Most short code lists, told apart by a one-letter list code.
struct Parameters : Table {
    using Table::Table;
    Text cod_par{this, "cod_par", 1};   ///< list code
    Text num_par{this, "num_par", 3};   ///< code of the entry within its list
    Label lib_par{this, "lib_par", 40}; ///< label
    Text cpt_par{this, "cpt_par", 9, codes::AccountOfParameter,
                 "Famille inconnue"}; ///< accounting account; family of a sub-family (list S)
    Text fam_dep{this, "fam_dep", 3, codes::FamilyOfParameter, "Famille inconnue"}; ///< family of a depot (list D)
    Trail trail{this, {cod_par, num_par}};
    Index by_code{this, {cod_par, num_par}, Uniqueness::Unique};
    Index by_label{this, {cod_par, lib_par}};
};
inline const Parameters strparam{"strparam"};

/// PAN prices by article.
struct PanPrices : Table {
    using Table::Table;
    Text pan_ref{this, "pan_ref", 13};              ///< article reference
    Label pan_lib{this, "pan_lib", 40};             ///< label
    Number pan_pa{this, "pan_pa", Number::Money};   ///< purchase price
    Number pan_pan{this, "pan_pan", Number::Money}; ///< PAN price
    Trail trail{this, {pan_ref}};
    Index by_reference{this, {pan_ref}, Uniqueness::Unique};
};
inline const PanPrices strpan{"strpan"};

/// Payment modes: due date = document date + days, then end of month, then a day of the month.
struct PaymentModes : Table {
    using Table::Table;
    Text cde_rglt{this, "cde_rglt", 2, codes::PaymentMode};              ///< code "00"
    Label lib_rglt{this, "lib_rglt", 40};                                ///< label
    Number nbj_rglt{this, "nbj_rglt", Number::Quantity};                 ///< number of days
    Text fdm_rglt{this, "fdm_rglt", 1, codes::YesNo, "Taper O ou N !!"}; ///< end of month, O/N
    Number jou_rglt{this, "jou_rglt", Number::Quantity};                 ///< day of the month, 0 for none
    Trail trail{this, {cde_rglt}};
    Index by_code{this, {cde_rglt}, Uniqueness::Unique};
};
inline const PaymentModes strparrgt{"strparrgt"};

/// Invoicing parameters: VAT codes.
struct VatCodes : Table {
    using Table::Table;
    Text par1_cde{this, "par1_cde", 1};                 ///< VAT code
    Label par1_lib{this, "par1_lib", 40};               ///< label
    Number par1_tx{this, "par1_tx", Number::Percent};   ///< rate in percent
    Text par1_cpt{this, "par1_cpt", 9, codes::Account}; ///< account
    Trail trail{this, {par1_cde}};
    Index by_code{this, {par1_cde}, Uniqueness::Unique};
};
inline const VatCodes strparfac{"strparfac"};

/// Texts printed on invoices.
struct InvoiceTexts : Table {
    using Table::Table;
    Text txt_cde{this, "txt_cde", 3};    ///< code
    Label txt_lib{this, "txt_lib", 255}; ///< text
    Trail trail{this, {txt_cde}};
    Index by_code{this, {txt_cde}, Uniqueness::Unique};
};
inline const InvoiceTexts strpartxt{"strpartxt"};

/// Currencies.
struct Currencies : Table {
    using Table::Table;
    Text mon_cle{this, "mon_cle", 3};   ///< key, "EUR"
    Label mon_lib{this, "mon_lib", 40}; ///< label
    Number mon_euro{this, "mon_euro",
                    Number::Coefficient}; ///< euros for one unit, divided by 100000 in the label's coefficient
    Trail trail{this, {mon_cle}};
    Index by_key{this, {mon_cle}, Uniqueness::Unique};
};
inline const Currencies strmonnaie{"strmonnaie"};

/// Chart of accounts, in compta.mdb.
struct Accounts : Table {
    using Table::Table;
    Text cpt_aff{this, "cpt_aff", 9};   ///< account, 9 digits
    Label cpt_lib{this, "cpt_lib", 40}; ///< label
    Trail trail{this, {cpt_aff}};
    Index by_account{this, {cpt_aff}, Uniqueness::Unique};
};
inline const Accounts strplan{"strplan"};

} // namespace molven

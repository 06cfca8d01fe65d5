#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// LPP reimbursement list.
struct LppCodes : Table {
    using Table::Table;
    Text lpp_code{this, "lpp_code", 13};                  ///< code
    Label lpp_lib{this, "lpp_lib", 80};                   ///< label
    Number lpp_ttc{this, "lpp_ttc", Number::Money};       ///< reimbursement price with VAT
    Text lpp_tips{this, "lpp_tips", 13, codes::TipsCode}; ///< TIPS code that corresponds
    Trail trail{this, {lpp_code}};
    Index by_code{this, {lpp_code}, Uniqueness::Unique};
    Index by_tips{this, {lpp_tips}};
};
inline const LppCodes strlpp{"strlpp"};

/// TIPS reimbursement list.
struct TipsCodes : Table {
    using Table::Table;
    Text cod_tips{this, "cod_tips", 13};              ///< code
    Label lib_tips{this, "lib_tips", 80};             ///< label
    Number ttc_tips{this, "ttc_tips", Number::Money}; ///< reimbursement price with VAT
    Trail trail{this, {cod_tips}};
    Index by_code{this, {cod_tips}, Uniqueness::Unique};
};
inline const TipsCodes strpartips{"strpartips"};

/// Special prices by client and article.
struct ClientTariffs : Table {
    using Table::Table;
    Text tar_clt{this, "tar_clt", 6, codes::Client, "Ce code n'existe pas"};               ///< client code
    Text tar_ref{this, "tar_ref", 13, codes::ArticleOfTariff, "Cet article n'existe pas"}; ///< article reference
    Label tar_nom{this, "tar_nom", 40};                                                    ///< client name
    Label tar_lib{this, "tar_lib", 40};                                                    ///< article designation
    Number tar_pvt{this, "tar_pvt", Number::Money}; ///< price, on the article's own basis
    Trail trail{this, {tar_clt, tar_ref}};
    Index by_client{this, {tar_clt, tar_ref}, Uniqueness::Unique};
};
inline const ClientTariffs strtarifclt{"strtarifclt"};

/// Discounts by client category and article category.
struct DiscountRates : Table {
    using Table::Table;
    Text rem_clt{this, "rem_clt", 3};                 ///< client category
    Text rem_art{this, "rem_art", 3};                 ///< article category
    Number rem_rem{this, "rem_rem", Number::Percent}; ///< percent
    Label rem_lib{this, "rem_lib", 40};               ///< label
    Trail trail{this, {rem_clt, rem_art}};
    Index by_categories{this, {rem_clt, rem_art}, Uniqueness::Unique};
};
inline const DiscountRates strparrem{"strparrem"};

/// Commission rates of the representatives.
struct CommissionRates : Table {
    using Table::Table;
    Text c_rep{this, "c_rep", 3, codes::Representative, "Ce code n'existe pas"}; ///< representative
    Label c_nom{this, "c_nom", 40};                                              ///< name
    Text c_ref{this, "c_ref", 13};                                               ///< commission category
    Number c_tau{this, "c_tau", Number::Percent};                                ///< percent
    Trail trail{this, {c_rep, c_ref}};
    Index by_representative{this, {c_rep, c_ref}, Uniqueness::Unique};
};
inline const CommissionRates strtauxrep{"strtauxrep"};

} // namespace molven

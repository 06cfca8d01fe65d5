#pragma once

#include "data/schema.h"

namespace molven {

/// Who sells: the company as its papers name it; one record, none before it was entered. See reference/seller.h.
struct SellerRecord : Table {
    using Table::Table;
    Label emt_nom{this, "emt_nom", 60};             ///< company name, as registered
    Label emt_jur{this, "emt_jur", 40};             ///< legal form: "SAS", "SARL"
    Number emt_cap{this, "emt_cap", Number::Money}; ///< capital, in the company's currency
    Label emt_l1{this, "emt_l1", 40};               ///< address, without postal code and town
    Label emt_l2{this, "emt_l2", 40};
    Label emt_l3{this, "emt_l3", 40};
    Text emt_cp{this, "emt_cp", 10};       ///< postal code
    Label emt_vil{this, "emt_vil", 40};    ///< town
    Text emt_pay{this, "emt_pay", 2};      ///< country, ISO 3166: "FR"
    Text emt_tel{this, "emt_tel", 20};     ///< telephone
    Text emt_fax{this, "emt_fax", 20};     ///< telefax
    Text emt_mail{this, "emt_mail", 80};   ///< e-mail
    Text emt_web{this, "emt_web", 80};     ///< web site
    Text emt_siret{this, "emt_siret", 20}; ///< SIRET; its first nine digits are the SIREN
    Label emt_rcs{this, "emt_rcs", 40};    ///< trade register: "RCS Lyon"
    Text emt_ape{this, "emt_ape", 6};      ///< code of the activity: "4646Z"
    Text emt_tva{this, "emt_tva", 20};     ///< VAT number, without blanks
    Label emt_bque{this, "emt_bque", 40};  ///< bank
    Text emt_iban{this, "emt_iban", 42};   ///< account to pay to, without blanks
    Text emt_bic{this, "emt_bic", 11};     ///< its bank's BIC
    Label emt_pen{this, "emt_pen", 255};   ///< late payment penalties, as invoices state them
    Label emt_esc{this, "emt_esc", 255};   ///< discount for early payment, as invoices state it
    Label emt_exo{this, "emt_exo", 255};   ///< why an exempt amount bears no VAT
    Trail trail{this, {emt_nom}};
};
inline const SellerRecord stremetteur{"stremetteur"};

} // namespace molven

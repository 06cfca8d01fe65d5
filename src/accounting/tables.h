#pragma once

#include "data/schema.h"

namespace molven {

/// Invoice lines of a period with what statistics and commissions need, in tri.mdb.
struct SalesStatistics : Table {
    using Table::Table;
    Text sta_aa{this, "sta_aa", 4}; ///< year, number and line of the invoice
    Text sta_no{this, "sta_no", 6};
    Text sta_lg{this, "sta_lg", 3};
    Text sta_imm{this, "sta_imm", 8};   ///< unit
    Text sta_ref{this, "sta_ref", 13};  ///< article
    Label sta_li1{this, "sta_li1", 40}; ///< designation
    Label sta_li2{this, "sta_li2", 40};
    Label sta_id1{this, "sta_id1", 80}; ///< identification
    Label sta_id2{this, "sta_id2", 80};
    Text sta_pvt{this, "sta_pvt", 10}; ///< price indicator
    Text sta_typ{this, "sta_typ", 1};  ///< unit type
    Text sta_ste{this, "sta_ste", 20}; ///< sterilisation batch and dates
    Text sta_dst{this, "sta_dst", 7};
    Text sta_dpr{this, "sta_dpr", 7};
    Number sta_qte{this, "sta_qte", Number::Quantity};  ///< quantity
    Number sta_pa{this, "sta_pa", Number::Money};       ///< purchase price
    Number sta_px{this, "sta_px", Number::Money};       ///< unit price
    Number sta_remx{this, "sta_remx", Number::Percent}; ///< discount, percent
    Number sta_pv{this, "sta_pv", Number::Money};       ///< net unit price
    Number sta_ht{this, "sta_ht", Number::Money};       ///< line total without VAT
    Text sta_tva{this, "sta_tva", 1};                   ///< VAT class
    Text sta_clt{this, "sta_clt", 6};                   ///< client
    Text sta_nho{this, "sta_nho", 20};
    Text sta_tip{this, "sta_tip", 13};
    Text sta_dep{this, "sta_dep", 3};
    Text sta_tar{this, "sta_tar", 20};
    Number sta_ttc{this, "sta_ttc", Number::Money}; ///< line total with VAT
    Text sta_cpt{this, "sta_cpt", 1};
    Text sta_fimm{this, "sta_fimm", 30};
    Text sta_fref{this, "sta_fref", 20};
    Text sta_imp{this, "sta_imp", 9};
    Text sta_datf{this, "sta_datf", 8}; ///< invoice date "yyyymmdd"
    Text sta_mon{this, "sta_mon", 3};
    Text sta_eur{this, "sta_eur", 10};
    Text sta_rep{this, "sta_rep", 3};                     ///< representative
    Number sta_rem{this, "sta_rem", Number::Percent};     ///< document discount
    Text sta_chr{this, "sta_chr", 3};                     ///< surgeon
    Text sta_fam{this, "sta_fam", 3};                     ///< article family
    Text sta_fou{this, "sta_fou", 6};                     ///< supplier
    Text sta_crp{this, "sta_crp", 3};                     ///< commission category
    Text sta_cdf{this, "sta_cdf", 3};                     ///< client family
    Label sta_nom{this, "sta_nom", 40};                   ///< client name
    Text sta_cp{this, "sta_cp", 5};                       ///< postal code
    Label sta_vil{this, "sta_vil", 40};                   ///< town
    Number sta_net{this, "sta_net", Number::Money};       ///< net turnover of the line
    Number sta_brut{this, "sta_brut", Number::Money};     ///< gross turnover
    Number sta_achat{this, "sta_achat", Number::Money};   ///< purchase value
    Number sta_marge{this, "sta_marge", Number::Money};   ///< margin
    Number sta_pourc{this, "sta_pourc", Number::Percent}; ///< margin in percent
    Text sta_nbl{this, "sta_nbl", 6};                     ///< delivery note
    Text sta_mac{this, "sta_mac", 6};                     ///< month "yyyymm"
    Index by_representative{this, {sta_rep, sta_no, sta_lg}};
    Index by_number{this, {sta_aa, sta_no}};
};
inline const SalesStatistics statd{"statd"};

} // namespace molven

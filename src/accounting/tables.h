#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// Invoice lines of a period with what statistics and commissions need, in tri.mdb; what its fields are stands in
/// sales_statistics.
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
    Text sta_dep{this, "sta_dep", 6};
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
    Text sta_cp{this, "sta_cp", 10};                      ///< postal code
    Label sta_vil{this, "sta_vil", 40};                   ///< town
    Text sta_dpt{this, "sta_dpt", 3};                     ///< department of the postal code, empty abroad
    Number sta_net{this, "sta_net", Number::Money};       ///< net turnover of the line
    Number sta_brut{this, "sta_brut", Number::Money};     ///< gross turnover
    Number sta_achat{this, "sta_achat", Number::Money};   ///< purchase value
    Number sta_marge{this, "sta_marge", Number::Money};   ///< margin
    Number sta_pourc{this, "sta_pourc", Number::Percent}; ///< margin in percent
    Text sta_nbl{this, "sta_nbl", 6};                     ///< delivery note
    Text sta_mac{this, "sta_mac", 6};                     ///< month "yyyymm"
    Text sta_vte{this, "sta_vte", 9};                     ///< sales account
    Index by_representative{this, {sta_rep, sta_no, sta_lg}};
    Index by_number{this, {sta_aa, sta_no}};
};
inline const SalesStatistics statd{"statd"};
/// The same of the period that another one is compared with.
inline const SalesStatistics statdc{"statdc"};
/// The same of the documents being transferred to accounting.
inline const SalesStatistics statdt{"statdt"};

/// One row of a statistics report: a group of lines and what they add up to; shown, never stored.
struct StatisticsRows : SalesStatistics {
    using SalesStatistics::SalesStatistics;
    Label sta_lib{this, "sta_lib", 60};                 ///< name of what the rows are grouped by
    Number sta_part{this, "sta_part", Number::Percent}; ///< share of the whole turnover, percent
    Number sta_net2{this, "sta_net2", Number::Money};   ///< turnover of the period compared with
    Number sta_evol{this, "sta_evol", Number::Percent}; ///< change against it, percent; null when it had none
};
inline const StatisticsRows strstat{"strstat"};

/// What one representative earns; shown, never stored.
struct CommissionRows : Table {
    using Table::Table;
    Text com_rep{this, "com_rep", 3};               ///< representative
    Label com_nom{this, "com_nom", 40};             ///< name
    Number com_lig{this, "com_lig", Number::Whole}; ///< invoice lines
    Number com_ca{this, "com_ca", Number::Money};   ///< turnover
    Number com_exo{this, "com_exo", Number::Money}; ///< commissions without VAT, at 5.5 %, at 19.6 %
    Number com_tv1{this, "com_tv1", Number::Money};
    Number com_tv2{this, "com_tv2", Number::Money};
    Number com_tva{this, "com_tva", Number::Money}; ///< VAT on them
    Number com_net{this, "com_net", Number::Money}; ///< to be paid
};
inline const CommissionRows strcommission{"strcommission"};

/// Entries of the sales journal, in compta.mdb; those of a transfer being prepared, in tri.mdb.
struct AccountingEntries : Table {
    using Table::Table;
    Text ecr_num{this, "ecr_num", 8};  ///< entry "00000001", one a document; the series never restarts
    Text ecr_lg{this, "ecr_lg", 3};    ///< its lines, from "001"
    Text ecr_jou{this, "ecr_jou", 3};  ///< journal
    Text ecr_dat{this, "ecr_dat", 10}; ///< date of the document "dd/mm/yyyy", and its sort key
    Text tri_dat{this, "tri_dat", 8};
    Text ecr_cpt{this, "ecr_cpt", 9, codes::Account}; ///< account
    Text ecr_clt{this, "ecr_clt", 6, codes::Client};  ///< client of the document
    Label ecr_lib{this, "ecr_lib", 60};               ///< wording
    Number ecr_deb{this, "ecr_deb", Number::Money};   ///< debit, or null
    Number ecr_cre{this, "ecr_cre", Number::Money};   ///< credit, or null
    Text ecr_ech{this, "ecr_ech", 10};                ///< due date of the client's line
    Text ecr_tva{this, "ecr_tva", 1};                 ///< VAT code of the amount
    Text ecr_aa{this, "ecr_aa", 4};                   ///< the document: its year, number, mode word,
    Text ecr_no{this, "ecr_no", 6};
    Text ecr_mod{this, "ecr_mod", 3};
    Text ecr_ser{this, "ecr_ser", 20}; ///< and the user's folder whose series it is of; empty for the data folder
    Text ecr_trf{this, "ecr_trf", 6};  ///< transfer "000001" that wrote it, and its day "yyyymmdd"
    Text ecr_jtr{this, "ecr_jtr", 8};
    Trail trail{this, {ecr_num, ecr_lg}};
    Index by_number{this, {ecr_num, ecr_lg}, Uniqueness::Unique};
    Index by_document{this, {ecr_no, ecr_aa}};
    Index by_transfer{this, {ecr_trf}};
    Index by_date{this, {tri_dat, ecr_num, ecr_lg}};
};
inline const AccountingEntries strecrit{"strecrit"};

/// A document that a transfer leaves out; shown, never stored.
struct LeftOutRows : Table {
    using Table::Table;
    Text rej_aa{this, "rej_aa", 4}; ///< year and number
    Text rej_no{this, "rej_no", 6};
    Label rej_clt{this, "rej_clt", 50}; ///< client
    Label rej_mot{this, "rej_mot", 80}; ///< why
};
inline const LeftOutRows strrejet{"strrejet"};

} // namespace molven

#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

namespace codes {
extern const CodeKind DepotLeft, DepotReached; ///< of a transfer: a set at a client lies under the client's code
} // namespace codes

/// Header of a sales document, one layout for all families.
struct DocumentHeaders : Table {
    using Table::Table;
    Text fac_aa{this, "fac_aa", 4}; ///< year of the document date
    Text fac_no{this, "fac_no", 6}; ///< number "000000"; the year does not restart the series
    Text fac_lg{this, "fac_lg", 3}; ///< "ENT"
    Text fac_clt{this, "fac_clt", 6, codes::Client, "Ce code n'existe pas"}; ///< client code
    Label fac_nom{this, "fac_nom", 40};                                      ///< client name
    Label fac_l1{this, "fac_l1", 40};                                        ///< address, copied at creation
    Label fac_l2{this, "fac_l2", 40};
    Label fac_l3{this, "fac_l3", 40};
    Label fac_l4{this, "fac_l4", 40};
    Label fac_l5{this, "fac_l5", 40};
    Label fac_refc{this, "fac_refc", 30};                                            ///< client's order reference
    Text fac_datc{this, "fac_datc", 10};                                             ///< order date "dd/mm/yyyy"
    Text fac_datf{this, "fac_datf", 10};                                             ///< document date
    Text tri_datf{this, "tri_datf", 8};                                              ///< its sort key "yyyymmdd"
    Label fac_pat{this, "fac_pat", 40};                                              ///< patient reference
    Text fac_rep{this, "fac_rep", 3, codes::Representative, "Représentant inconnu"}; ///< representative
    Label fac_btr{this, "fac_btr", 30};                                              ///< hospital voucher reference
    Text fac_trs{this, "fac_trs", 3, codes::Dispatch, "Ce code n'existe pas"};       ///< dispatch mode (list E)
    Text fac_chr{this, "fac_chr", 3, codes::Surgeon, "Ce code n'existe pas"};        ///< surgeon (list H)
    Text fac_exp{this, "fac_exp", 3};                                      ///< dispatch indicator of the client
    Text fac_mon{this, "fac_mon", 3, codes::Currency, "Monnaie inconnue"}; ///< currency
    Text fac_eur{this, "fac_eur", 10};                                     ///< euro field, tied to the currency
    Text fac_rglt{this, "fac_rglt", 2, codes::PaymentMode, "mode reglement inconnu"}; ///< payment mode
    Text fac_ech{this, "fac_ech", 10};                                                ///< due date "dd/mm/yyyy"
    Number fac_rem{this, "fac_rem", Number::Percent};                                 ///< document discount, percent
    Number fac_esc{this, "fac_esc", Number::Percent};                                 ///< settlement discount, percent
    Number fac_acpt{this, "fac_acpt", Number::Money};                                 ///< down payment
    Number fac_port{this, "fac_port", Number::Money};                                 ///< carriage without VAT
    Number fac_exo{this, "fac_exo", Number::Money}; ///< amount exempt from VAT, added to the total
    Label fac_fco{this, "fac_fco", 40};             ///< footer indicator shown with the payment mode
    Number fac_ht{this, "fac_ht", Number::Money};   ///< total without VAT
    Number fac_ttc{this, "fac_ttc", Number::Money}; ///< total with VAT
    Number fac_tv1{this, "fac_tv1", Number::Money}; ///< VAT of codes 1, 2, 3
    Number fac_tv2{this, "fac_tv2", Number::Money};
    Number fac_tv3{this, "fac_tv3", Number::Money};
    Number fac_tvp{this, "fac_tvp", Number::Money}; ///< VAT of the carriage
    Number fac_ffa{this, "fac_ffa", Number::Money}; ///< amount left to pay
    Label fac_mes{this, "fac_mes", 80};             ///< message line
    Label fac_clm{this, "fac_clm"};                 ///< client memo
    Text fac_blv{this, "fac_blv",
                 6}; ///< invoice that took over the delivery note, or note made of the proforma; "000000" while none
    Text fac_cpt{this, "fac_cpt", 1};                                ///< N open, T transferred
    Text fac_dep{this, "fac_dep", 3, codes::Depot, "Dépôt inconnu"}; ///< depot of the document
    Text fac_mode{this, "fac_mode", 8}; ///< mode word of its kind; empty on old documents, see documents::isOfKind
    Text fac_uid{this, "fac_uid", 32};  ///< drawn at creation: tells it from a later document with its number
    Text fac_pst{this, "fac_pst", 80};  ///< program creating it (see station.h), until it has a line or is kept without

    /// The lines of the address.
    QList<const Label*> address() const { return {&fac_l1, &fac_l2, &fac_l3, &fac_l4, &fac_l5}; }

    Trail trail{this, {fac_aa, fac_no}};
    KeptFields kept{this, {fac_ht, fac_ttc, fac_tv1, fac_tv2, fac_tv3, fac_tvp, fac_ffa}}; // the lines make the totals
    Index by_number{this, {fac_no, fac_aa}, Uniqueness::Unique};
    Index by_client{this, {fac_clt, fac_cpt, tri_datf}};
    Index by_date{this, {tri_datf, fac_mon, fac_ht}}; // what follows the day spares the turnover reading headers
    Index by_station{this, {fac_pst}};
    Index by_state{this, {fac_cpt, tri_datf, fac_ht}}; // what is open is counted without reading headers
};
inline const DocumentHeaders strlive{"strlive"};
inline const DocumentHeaders strcsge{"strcsge"};
inline const DocumentHeaders strface{"strface"};

/// Header of a transfer note; its address is the one delivered to. The note of an ancillary set goes from "A01" to the
/// code of its client, or back.
struct TransferHeaders : DocumentHeaders {
    using DocumentHeaders::DocumentHeaders;
    Text fac_depd{this, "fac_depd", 6, codes::DepotLeft, "Dépôt inconnu"};    ///< depot of departure
    Text fac_depa{this, "fac_depa", 6, codes::DepotReached, "Dépôt inconnu"}; ///< depot of arrival
    Text fac_dat{this, "fac_dat", 10};                                        ///< fac_datf again
    Text fac_eta{this, "fac_eta", 7}; ///< "N000000"; once renewed "T" and the number of the new note
};
inline const TransferHeaders strbtre{"strbtre"};

/// Line of a sales document. Each document with lines also holds a hidden record "000".
struct DocumentLines : Table {
    using Table::Table;
    Text fac_aa{this, "fac_aa", 4}; ///< year and number of the document
    Text fac_no{this, "fac_no", 6};
    Text fac_lg{this, "fac_lg", 3};   ///< "001" to "996"; "000" is hidden
    Text fac_imm{this, "fac_imm", 8}; ///< unit, empty for an untracked article or a text
    Text fac_ref{this, "fac_ref", 13, codes::Article, "Référence inconnue"}; ///< article reference
    Label fac_li1{this, "fac_li1", 40};                                      ///< designation
    Label fac_li2{this, "fac_li2", 40};
    Label fac_li3{this, "fac_li3", 40};
    Label fac_id1{this, "fac_id1", 80}; ///< identification printed below: lot, piece, donor, tissue
    Label fac_id2{this, "fac_id2", 80};
    Text fac_pvt{this, "fac_pvt", 10};                                    ///< price indicator
    Text fac_typ{this, "fac_typ", 1};                                     ///< unit type
    Text fac_ste{this, "fac_ste", 20};                                    ///< sterilisation batch
    Text fac_dst{this, "fac_dst", 7};                                     ///< sterilisation date
    Text fac_dpr{this, "fac_dpr", 7};                                     ///< expiry date
    Number fac_qte{this, "fac_qte", Number::Quantity};                    ///< quantity
    Number fac_pa{this, "fac_pa", Number::Money};                         ///< purchase price
    Number fac_px{this, "fac_px", Number::Money};                         ///< unit price before discount
    Number fac_remx{this, "fac_remx", Number::Percent};                   ///< discount in percent
    Number fac_pv{this, "fac_pv", Number::Money};                         ///< net unit price
    Number fac_ht{this, "fac_ht", Number::Money};                         ///< line total without VAT
    Text fac_tva{this, "fac_tva", 1, codes::VatCode, "Code TVA inconnu"}; ///< VAT code
    Number fac_ttc{this, "fac_ttc", Number::Money};                       ///< line total with VAT
    Text fac_clt{this, "fac_clt", 6};                                     ///< client code
    Text fac_nho{this, "fac_nho", 20};                                    ///< approval number
    Text fac_tip{this, "fac_tip", 13};                                    ///< reimbursement code
    Text fac_dep{this, "fac_dep", 6};                                     ///< depot
    Text fac_tar{this, "fac_tar", 20};                                    ///< price basis
    Text fac_nbl{this, "fac_nbl", 6};                                     ///< delivery note the line came from
    Text fac_cpt{this, "fac_cpt", 1};                                     ///< N open, T transferred
    Text fac_fimm{this, "fac_fimm", 30};                                  ///< supplier's serial
    Text fac_fref{this, "fac_fref", 20};                                  ///< supplier's reference
    Text fac_imp{this, "fac_imp", 9, codes::Account};                     ///< account charged
    Text fac_ori{this, "fac_ori", 6};     ///< on credit notes: document of the sale that the unit was taken back from,
    Label fac_opat{this, "fac_opat", 40}; ///< and the implantation that it ended: patient,
    Text fac_oclt{this, "fac_oclt", 6};   ///< hospital,
    Text fac_odat{this, "fac_odat", 10};  ///< date "dd/mm/yyyy"
    Trail trail{this, {fac_aa, fac_no, fac_lg}};
    Index by_number{this, {fac_no, fac_aa, fac_lg}};
    Index by_unit{this, {fac_imm, fac_no}};
};
inline const DocumentLines strlivl{"strlivl"};
inline const DocumentLines strcsgl{"strcsgl"};
inline const DocumentLines strfacl{"strfacl"};
inline const DocumentLines strbtrl{"strbtrl"};

/// Delivery address last used for a client, in blent.mdb.
struct DeliveryAddresses : Table {
    using Table::Table;
    Text bl_cod{this, "bl_cod", 6}; ///< client code
    Label bl_l1{this, "bl_l1", 40};
    Label bl_l2{this, "bl_l2", 40};
    Label bl_l3{this, "bl_l3", 40};
    Label bl_l4{this, "bl_l4", 40};
    Label bl_l5{this, "bl_l5", 40};
    /// The lines of the address.
    QList<const Label*> address() const { return {&bl_l1, &bl_l2, &bl_l3, &bl_l4, &bl_l5}; }

    Trail trail{this, {bl_cod}};
    Index by_client{this, {bl_cod}, Uniqueness::Unique};
};
inline const DeliveryAddresses strbl{"strbl"};

} // namespace molven

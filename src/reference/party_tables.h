#pragma once

#include "data/schema.h"
#include "reference/code_kinds.h"

namespace molven {

/// Clients: hospitals and clinics.
struct Clients : Table {
    using Table::Table;
    Text clt_cod{this, "clt_cod", 6};     ///< code "000000"
    Label clt_nom{this, "clt_nom", 40};   ///< name
    Label clt_resp{this, "clt_resp", 40}; ///< person in charge
    Text clt_nic{this, "clt_nic", 20};    ///< identification number; SIRET of a French client
    Label clt_l1{this, "clt_l1", 40};     ///< address
    Label clt_l2{this, "clt_l2", 40};
    Label clt_l3{this, "clt_l3", 40};
    Label clt_l4{this, "clt_l4", 40};
    Label clt_l5{this, "clt_l5", 40};     ///< postal code and town
    Label clt_liv1{this, "clt_liv1", 40}; ///< delivery address
    Label clt_liv2{this, "clt_liv2", 40};
    Label clt_liv3{this, "clt_liv3", 40};
    Label clt_liv4{this, "clt_liv4", 40};
    Label clt_liv5{this, "clt_liv5", 40};
    Label clt_fac1{this, "clt_fac1", 40}; ///< invoicing address
    Label clt_fac2{this, "clt_fac2", 40};
    Label clt_fac3{this, "clt_fac3", 40};
    Label clt_fac4{this, "clt_fac4", 40};
    Label clt_fac5{this, "clt_fac5", 40};
    Text clt_fax1{this, "clt_fax1", 20};
    Text clt_tel1{this, "clt_tel1", 20};
    Text clt_fax2{this, "clt_fax2", 20};
    Text clt_tel2{this, "clt_tel2", 20};
    Text clt_mail{this, "clt_mail", 80};
    Text clt_bque{this, "clt_bque", 5};                                ///< bank
    Text clt_guic{this, "clt_guic", 5};                                ///< branch
    Text clt_ncpt{this, "clt_ncpt", 11};                               ///< account number
    Text clt_rib{this, "clt_rib", 2};                                  ///< key
    Label clt_dom{this, "clt_dom", 40};                                ///< bank name
    Text clt_cpt{this, "clt_cpt", 6};                                  ///< accounting account, "000001" to "999999"
    Text clt_ccmx{this, "clt_ccmx", 20};                               ///< code in the outside accounting program
    Text clt_fac{this, "clt_fac", 1, codes::YesNo, "Taper O ou N !!"}; ///< invoicing authorised, O/N
    Text clt_rgt{this, "clt_rgt", 2, codes::PaymentMode, "Mode de règlement inconnu"}; ///< payment mode "00"
    Text clt_exp{this, "clt_exp", 3, codes::Dispatch, "Mode inconnu"};                 ///< usual dispatch mode
    Text clt_fam{this, "clt_fam", 3, codes::ClientFamily, "Famille inconnue"};         ///< family (list C)
    Text clt_dep{this, "clt_dep", 3, codes::Depot, "Dépôt inconnu"};                 ///< depot at this client (list D)
    Text clt_rep{this, "clt_rep", 3, codes::Representative, "Représentant inconnu"}; ///< representative (list R)
    Text clt_rem{this, "clt_rem", 3, codes::DiscountCategory, "Code remise incorrect"}; ///< discount category
    Text clt_edtr{this, "clt_edtr", 1, codes::YesNo, "Taper O ou N !!"};                ///< statement printed, O/N
    Text clt_rbl{this, "clt_rbl", 1, codes::YesNo, "Taper O ou N !!"}; ///< delivery notes grouped on one invoice, O/N
    Label clt_memo{this, "clt_memo"};                                  ///< free memo
    Label clt_chemin{this, "clt_chemin", 255};                         ///< folder of attached documents
    Text clt_tva{this, "clt_tva", 20};                                 ///< VAT number, without blanks
    Text clt_pays{this, "clt_pays", 2}; ///< country, ISO 3166: "FR"; empty for the seller's own
    Text clt_svc{this, "clt_svc", 100}; ///< public sector: service that the invoice is for
    Text clt_rou{this, "clt_rou", 100}; ///< electronic address of invoices; its SIRET when empty

    Trail trail{this, {clt_cod}};
    Index by_code{this, {clt_cod}, Uniqueness::Unique};
    Index by_name{this, {clt_nom}};
};
inline const Clients strclient{"strclient"};

/// Suppliers.
struct Suppliers : Table {
    using Table::Table;
    Text fou_cod{this, "fou_cod", 6};     ///< code "000000"
    Label fou_nom{this, "fou_nom", 40};   ///< name
    Label fou_resp{this, "fou_resp", 40}; ///< person in charge
    Label fou_l1{this, "fou_l1", 40};     ///< address
    Label fou_l2{this, "fou_l2", 40};
    Label fou_l3{this, "fou_l3", 40};
    Label fou_l4{this, "fou_l4", 40};
    Label fou_l5{this, "fou_l5", 40};
    Text fou_fax1{this, "fou_fax1", 20};
    Text fou_tel1{this, "fou_tel1", 20};
    Text fou_fax2{this, "fou_fax2", 20};
    Text fou_tel2{this, "fou_tel2", 20};
    Text fou_mail{this, "fou_mail", 80};
    Text fou_fam{this, "fou_fam", 3, codes::SupplierFamily, "code famille inconnu"};     ///< family (list F)
    Text fou_exp{this, "fou_exp", 3, codes::Dispatch, "Mode inconnu"};                   ///< usual dispatch mode
    Text fou_rglt{this, "fou_rglt", 2, codes::PaymentMode, "Mode de règlement inconnu"}; ///< payment mode
    Text fou_abr{this, "fou_abr", 10};                                                   ///< short name
    Text fou_clt{this, "fou_clt", 6, codes::Client, "Client inconnu"}; ///< the same party's client code
    Text fou_cpt{this, "fou_cpt", 9, codes::Account};                  ///< accounting account
    Label fou_chemin{this, "fou_chemin", 255};                         ///< folder of attached documents

    Trail trail{this, {fou_cod}};
    Index by_code{this, {fou_cod}, Uniqueness::Unique};
    Index by_name{this, {fou_nom}};
};
inline const Suppliers strfournis{"strfournis"};

/// Files of the folder of attached documents being shown, in documents.mdb.
struct AttachedDocuments : Table {
    using Table::Table;
    Label doc_fic{this, "doc_fic", 255}; ///< file name
};
inline const AttachedDocuments strdocs{"strdocs"};

} // namespace molven

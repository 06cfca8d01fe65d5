#pragma once

#include "data/schema.h"

namespace molven {

/// Company dossiers of an installation, in societe.mdb of the program folder. Order of fields is the order of
/// the grid's columns.
struct Dossiers : Table {
    using Table::Table;
    Label soc_nom{this, "soc_nom", 60};               ///< dossier (company) name
    Label soc_chemin{this, "soc_chemin", 255};        ///< data folder, with trailing separator
    Text soc_mot{this, "soc_mot", 20};                ///< word typed to enter; also the site sub-code
    Text soc_utilisateur{this, "soc_utilisateur", 2}; ///< user sub-folder, "**" for none
    Trail trail{this, {soc_nom}};
};
inline const Dossiers strsociete{"strsociete"};

/// What is specific to the company whose data the dossier holds; one record.
struct CompanyRecord : Table {
    using Table::Table;
    Text spe_cod{this, "spe_cod", 2};      ///< company code
    Label spe_nom{this, "spe_nom", 60};    ///< company name, in the main window's title
    Label spe_pied{this, "spe_pied", 255}; ///< footer of printed documents
    Text spe_mon{this, "spe_mon", 20};     ///< currency in which prices are expressed
    Text spe_btl{this, "spe_btl", 1};      ///< "O": delivery is allowed from the client's own depot
    Text spe_cdc{this, "spe_cdc", 20};     ///< used by document printing
    Text spe_csg{this, "spe_csg", 20};     ///< option of the consignment documents
    Text spe_cns{this, "spe_cns", 20};     ///< used by document printing for invoices, credit and consignment notes
    Text spe_cpt{this, "spe_cpt", 20};     ///< setting of the transfer to accounting
    Label spe_l1{this, "spe_l1", 40};      ///< postal address of the company, as its letters show it
    Label spe_l2{this, "spe_l2", 40};
    Label spe_l3{this, "spe_l3", 40};
    Label spe_l4{this, "spe_l4", 40};
    Trail trail{this, {spe_cod}};
};
inline const CompanyRecord strspecif{"strspecif"};

} // namespace molven

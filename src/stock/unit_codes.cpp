#include "data/code_kind.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "stock/stock_tables.h"
#include "stock/unit_tables.h"
#include "stock/units.h"

namespace molven::codes {

namespace {

/// A set at a client lies under the client's code.
const CodeKind PlaceOfSet{.table = &strclient,
                          .key = &strclient.clt_cod,
                          .words = &strclient.clt_nom,
                          .subject = QStringLiteral("Ce client"),
                          .besides = {SetDepot}};
const CodeKind PlaceOfUnit{.table = &strparam,
                           .key = &strparam.num_par,
                           .words = &strparam.lib_par,
                           .list = &strparam.cod_par,
                           .letter = list::Depot,
                           .subject = QStringLiteral("Ce dépôt"),
                           .title = QStringLiteral("LES DEPOTS"),
                           .besides = {ReturnedDepot}};

} // namespace

const CodeKind SetType{.table = &strancillaire,
                       .key = &strancillaire.anc_code,
                       .words = &strancillaire.anc_lib,
                       .file = DataFile::Ancillaire,
                       .subject = QStringLiteral("Ce type d'ancillaire")};
const CodeKind CauseOfUnit{.cases = {{strproduit.fab_con, list::Reworked, Reworked},
                                     {strproduit.fab_con, list::Derogated, Derogated},
                                     {strproduit.fab_con, list::Scrapped, Scrapped}}};
const CodeKind CauseOfChange{.cases = {{strconform.conf_typ, list::Reworked, Reworked},
                                       {strconform.conf_typ, list::Derogated, Derogated},
                                       {strconform.conf_typ, list::Scrapped, Scrapped}}};
const CodeKind DepotOfUnit{.cases = {{strproduit.tes_vte, state::InSet, PlaceOfSet}}, .otherwise = &PlaceOfUnit};
const CodeKind HolderOfUnit{.cases = {{strproduit.num_dep, ReturnedDepot, Supplier}}, .otherwise = &Client};

} // namespace molven::codes

#include "data/code_kind.h"
#include "reference/parameters.h"
#include "sales/document_tables.h"

namespace molven::codes {

const CodeKind DepotLeft{.cases = {{strbtre.fac_depa, SetDepot, Client}}, .otherwise = &Depot};
const CodeKind DepotReached{.cases = {{strbtre.fac_depd, SetDepot, Client}}, .otherwise = &Depot};

} // namespace molven::codes

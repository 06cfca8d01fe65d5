#pragma once

#include "printing/report.h"
#include "stock/depot_counts.h"

namespace molven {

/// The state of a count on paper, for both parties to sign once it is closed. `company` and `client` are names; the
/// latter may be empty.
Report countStatement(const DepotCount& count, const QString& depotName, const QString& company, const QString& client);

/// "12 attendues, 10 trouvées, 2 manquantes, 1 inattendue, 0 déplacée".
QString countWords(const CountTally& tally);

} // namespace molven

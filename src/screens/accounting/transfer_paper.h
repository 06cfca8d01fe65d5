#pragma once

#include "data/database.h"
#include "printing/report.h"

namespace molven {

/// The entries of a transfer, document by document, and what each account came to.
Report printedTransfer(Database compta, const QString& number);

} // namespace molven

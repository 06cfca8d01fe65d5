#pragma once

#include "accounting/commissions.h"
#include "printing/print_job.h"

namespace molven {

/// The statements on paper, each representative on pages of his own.
PrintJob printedCommissions(const QList<commissions::Statement>& statements, const Period& period);

} // namespace molven

#pragma once

#include "electronic/invoice.h"

namespace molven::electronic {

/// The rules of the norm that an invoice's amounts break, by their names: "BR-CO-10 : ..."; none of a sound one. The
/// VAT of a rate may differ from base by rate by less than one unit, as the norm's own check allows: each line of a
/// sale is rounded by itself.
QStringList brokenRules(const Invoice& invoice);

} // namespace molven::electronic

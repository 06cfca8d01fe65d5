#pragma once

#include "data/decimal.h"

namespace molven {

/// Whether an amount can be a price: not negative, and below a million, which no implant costs and no box shows. More
/// is a code that a scanner typed into the wrong box.
inline bool isPrice(const Decimal& amount) { return amount >= Decimal(0) && amount < Decimal(1'000'000); }

} // namespace molven

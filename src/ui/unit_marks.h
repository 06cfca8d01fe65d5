#pragma once

#include "ui/record_model.h"

namespace molven {

/// The column of a unit's state, as every grid of units shows it: where the unit is, or what is wrong with it, in a
/// word and a colour.
GridColumn unitStateColumn();
/// The same in a grid of records that hold the state alone.
GridColumn stateColumn(const Text& state);

/// A column of expiries "mm/yyyy": past and coming ones stand out.
GridColumn expiryColumn(const Text& expiry);

} // namespace molven

#pragma once

#include "data/catalogue.h"
#include "data/schema.h"

namespace molven {

/// The tables that a database file holds.
const QList<const Table*>& tablesOf(DataFile file);

} // namespace molven

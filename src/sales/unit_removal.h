#pragma once

#include "shell/session.h"
#include "stock/immatriculation.h"

namespace molven::unit_removal {

/// Deletes a unit in stock that no paper names: no line of a document of any kind, current or archived, no set and no
/// count. Its conformity history and its waiting label go with it, so that the next unit to draw its number inherits
/// nothing. Throws Refusal for another.
void remove(const Session& session, const Immatriculation& unit);

} // namespace molven::unit_removal

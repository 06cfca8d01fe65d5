#pragma once

#include "reference/code_tables.h"

namespace molven::endowments {

/// The table of the depots' endowments (`strdotation`): of articles followed by unit, in every depot but the main one,
/// which fills the others.
const CodeTable& table();

} // namespace molven::endowments

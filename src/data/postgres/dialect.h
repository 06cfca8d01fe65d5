#pragma once

#include "data/dialect.h"

namespace molven::postgres {

const Dialect& dialect();

} // namespace molven::postgres

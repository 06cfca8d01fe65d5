#pragma once

#include "data/dialect.h"

namespace molven::sqlite {

const Dialect& dialect();

} // namespace molven::sqlite

#pragma once

struct sqlite3;

namespace molven::sqlite {

/// Gives a connection the functions product(places, a, b, ...) and quotient(places, a, b): exact on decimals, which the
/// engine keeps as binary fractions, and rounded half away from zero. A null among the numbers makes null.
void addExactFunctions(sqlite3* connection);

} // namespace molven::sqlite

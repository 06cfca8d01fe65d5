#pragma once

#include <QString>

/// Departments of France as postal codes tell them: two digits, three overseas; Corsica is "20".
namespace molven::departments {

/// Empty for an unknown code.
QString name(const QString& code);

} // namespace molven::departments

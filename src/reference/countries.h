#pragma once

#include <QString>

/// Countries by their two letters of ISO 3166.
namespace molven::countries {

bool isKnown(const QString& code);
/// The name as the last line of a French address has it, in capitals; the English one of countries that are
/// seldom written to. Empty for an unknown code.
QString name(const QString& code);

} // namespace molven::countries

#pragma once

#include <QString>

/// What the screens of accounts have in common: how amounts read, and the names of the boxes of a period.
namespace molven {

inline const QString Amount = QStringLiteral("# ### ##0.00");
inline const QString From = QStringLiteral("Mskdatdeb"), To = QStringLiteral("Mskdatfin");

} // namespace molven

#pragma once

#include <QString>

/// What rules that move units name of them; see Locks.
namespace molven::unit_locks {

inline QString unit(const QString& immatriculation) { return QStringLiteral("unit ") + immatriculation.toUpper(); }
/// Quantity, average and last price of an article.
inline QString article(const QString& reference) { return QStringLiteral("article ") + reference.trimmed().toUpper(); }
/// The series of the numbers of units.
inline QString numbers() { return QStringLiteral("numbers of units"); }

} // namespace molven::unit_locks

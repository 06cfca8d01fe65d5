#pragma once

#include "data/locks.h"
#include "reference/articles.h"

/// What rules name of units, and of what else they are kept with; see Locks.
namespace molven::unit_locks {

inline QString unit(const QString& immatriculation) { return QStringLiteral("unit ") + immatriculation.toUpper(); }
/// Quantity, average and last price of an article.
inline QString article(const QString& reference) { return articles::lockName(reference); }
/// The series of the numbers of units.
inline QString numbers() { return QStringLiteral("numbers of units"); }
/// An ancillary set with its lines.
inline QString set(const QString& serial) { return QStringLiteral("set ") + serial; }
/// The series of the serials of sets, and how many sets each type has.
inline QString sets() { return QStringLiteral("numbers of sets"); }
/// The count that is open of a depot, and its number while it has none.
inline QString count(const QString& depot) { return QStringLiteral("count ") + depot.toUpper(); }
inline QString counts() { return QStringLiteral("numbers of counts"); }

inline QStringList units(const QStringList& immatriculations) {
    QStringList names;
    for (const QString& number : immatriculations) names.append(unit(number));
    return names;
}

} // namespace molven::unit_locks

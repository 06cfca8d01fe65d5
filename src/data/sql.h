#pragma once

#include <QStringList>

namespace molven {

class Dialect;

/// A statement being written for one engine: its text is made piece by piece, in the order in which the marks stand.
struct Sql {
    const Dialect& dialect;
    QStringList values = {}; ///< bound to the marks written so far

    /// A mark for this value. A null text would be bound as the engine's null, which equals nothing.
    QString bind(const QString& value) {
        values.append(value.isNull() ? QStringLiteral("") : value);
        return QStringLiteral("?");
    }
    /// A mark for a value of which a null text is meant as the engine's null.
    QString bindOrNull(const QString& value) {
        values.append(value);
        return QStringLiteral("?");
    }
};

} // namespace molven

#pragma once

#include <QDateTime>

namespace molven {

/// The one place that asks the system for the date. A test or a scenario sets it to another day.
class Clock {
public:
    static QDate today();
    static QDateTime now();
    /// The day it was set to; invalid while it follows the system.
    static QDate setting();
    /// From now on today() is `day`; an invalid date returns to the system's.
    static void set(const QDate& day);
};

} // namespace molven

#include "data/clock.h"

namespace molven {

namespace {
QDate& replacement() {
    static QDate day;
    return day;
}
} // namespace

QDate Clock::today() { return replacement().isValid() ? replacement() : QDate::currentDate(); }

QDate Clock::setting() { return replacement(); }

QDateTime Clock::now() { return {today(), QTime::currentTime()}; }

void Clock::set(const QDate& day) { replacement() = day; }

} // namespace molven

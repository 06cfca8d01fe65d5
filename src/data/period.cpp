#include "data/period.h"

#include "data/dates.h"
#include "data/require.h"

namespace molven {

QString dayOfKey(const QString& key) { return key.mid(6, 2) + u'/' + key.mid(4, 2) + u'/' + key.left(4); }

QString Period::words() const { return QStringLiteral(" Du %1 au %2").arg(dayOfKey(from), dayOfKey(to)); }

Period typedPeriod(const QString& from, const QString& to, const QString& fromBox, const QString& toBox,
                   const QString& missing) {
    require(!isEmptyDate(from), missing, fromBox);
    require(!isEmptyDate(to), missing, toBox);
    require(dateFromText(from).isValid(), QStringLiteral("date début non valide"), fromBox);
    require(dateFromText(to).isValid(), QStringLiteral("date fin non valide"), toBox);
    const Period period{sortKey(from), sortKey(to)};
    require(period.from <= period.to, QStringLiteral("date fin < date début"), toBox);
    return period;
}

} // namespace molven

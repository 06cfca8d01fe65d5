#include "data/dates.h"

#include <QRegularExpression>

namespace molven {

QDate dateFromText(const QString& text) { return QDate::fromString(text.trimmed(), QStringLiteral("dd/MM/yyyy")); }

namespace {

/// Of two digits, the year of that ending nearest to today; another one as it is, 0 when it is not one.
int typedYear(const QString& text, const QDate& today) {
    const int year = text.toInt();
    if (text.size() != 2) return text.size() == 4 ? year : 0;
    const int ofCentury = today.year() / 100 * 100 + year;
    if (ofCentury - today.year() > 50) return ofCentury - 100;
    return ofCentury - today.year() < -49 ? ofCentury + 100 : ofCentury;
}

} // namespace

QDate typedDay(const QString& text, const QDate& today) {
    const QStringList parts = text.trimmed().split(u'/', Qt::SkipEmptyParts);
    if (parts.size() < 2 || parts.size() > 3) return {};
    const int year = parts.size() == 3 ? typedYear(parts[2].trimmed(), today) : today.year();
    return {year, parts[1].trimmed().toInt(), parts[0].trimmed().toInt()};
}

QDate typedMonth(const QString& text, const QDate& today) {
    const QStringList parts = text.trimmed().split(u'/', Qt::SkipEmptyParts);
    if (parts.size() != 2) return {};
    return {typedYear(parts[1].trimmed(), today), parts[0].trimmed().toInt(), 1};
}

QString monthText(const QDate& date) { return date.toString(QStringLiteral("MM/yyyy")); }

QString dateText(const QDate& date) { return date.toString(QStringLiteral("dd/MM/yyyy")); }

bool isEmptyDate(const QString& text) {
    for (const QChar c : text)
        if (c.isLetterOrNumber()) return false;
    return true;
}

QString sortKey(const QString& text) {
    if (isEmptyDate(text)) return {};
    const QString date = text.trimmed();
    return date.mid(6, 4) + date.mid(3, 2) + date.left(2);
}

QString sortKey(const QDate& date) { return date.toString(QStringLiteral("yyyyMMdd")); }

bool isMonthYear(const QString& text) {
    static const QRegularExpression monthYear(QStringLiteral("^(0[1-9]|1[0-2])/\\d{4}$"));
    return monthYear.match(text.trimmed()).hasMatch();
}

} // namespace molven

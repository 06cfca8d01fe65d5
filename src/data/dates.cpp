#include "data/dates.h"

#include <QRegularExpression>

namespace molven {

QDate dateFromText(const QString& text) { return QDate::fromString(text.trimmed(), QStringLiteral("dd/MM/yyyy")); }

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

#pragma once

#include <QDate>
#include <QString>

namespace molven {

/// What an empty date box shows, and what old records hold for "no date".
inline const QString EmptyDate = QStringLiteral("__/__/____");

/// A date typed or stored as "dd/mm/yyyy"; an invalid QDate when it is not one.
QDate dateFromText(const QString& text);
/// "dd/mm/yyyy"; empty for an invalid date.
QString dateText(const QDate& date);
/// The day that a person means who types "12/5", "12/05/26" or "12/05/2026", of this year when none is typed; an
/// invalid QDate when it is not one. A year of two digits lies within fifty years of today.
QDate typedDay(const QString& text, const QDate& today);
/// The first of the month that a person means who types "5/29" or "05/2029".
QDate typedMonth(const QString& text, const QDate& today);
/// True for an empty text and for the mask without digits.
bool isEmptyDate(const QString& text);
/// Sort twin "yyyymmdd" of a "dd/mm/yyyy" text; empty for an empty date.
QString sortKey(const QString& text);
QString sortKey(const QDate& date);
/// "mm/yyyy" of a date; empty for an invalid one.
QString monthText(const QDate& date);
/// True for "mm/yyyy" with a month from 01 to 12.
bool isMonthYear(const QString& text);

} // namespace molven

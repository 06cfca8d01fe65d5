#include "data/decimal.h"

#include <QRegularExpression>

namespace molven {

namespace {

/// 10^places.
template <class Value>
Value scale(int places) {
    Value result = 1;
    for (int i = 0; i < places; ++i) result *= 10;
    return result;
}

} // namespace

std::optional<Decimal> Decimal::parse(const QString& text) {
    return text.contains(u'e', Qt::CaseInsensitive) ? std::nullopt : read(text);
}

Decimal Decimal::fromText(const QString& text) { return read(text).value_or(Decimal()); }

std::optional<Decimal> Decimal::read(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    for (const QChar c : text)
        if (!c.isSpace()) plain += c == u',' ? QChar(u'.') : c;
    static const QRegularExpression number(QStringLiteral("^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d{1,3})?$"));
    if (!number.match(plain).hasMatch()) return std::nullopt;
    return Decimal(Value(plain.toStdString()));
}

QString Decimal::toString() const {
    QString text = QString::fromStdString(value_.str(12, std::ios_base::fixed));
    while (text.endsWith(u'0')) text.chop(1);
    if (text.endsWith(u'.')) text.chop(1);
    return text == u"-0" ? QStringLiteral("0") : text;
}

QString Decimal::toFixed(int places) const {
    const Value cut = rounded(places).value_;
    if (places == 0) return QString::fromStdString(cut.str(0, std::ios_base::fixed)).section(u'.', 0, 0);
    return QString::fromStdString(cut.str(places, std::ios_base::fixed));
}

Decimal Decimal::rounded(int places) const {
    const Value factor = scale<Value>(places);
    const Value shifted = value_ * factor;
    const Value half = Value(1) / 2;
    return Decimal(Value((shifted < 0 ? ceil(Value(shifted - half)) : floor(Value(shifted + half))) / factor));
}

Decimal Decimal::floored(int places) const {
    const Value factor = scale<Value>(places);
    return Decimal(Value(floor(Value(value_ * factor)) / factor));
}

} // namespace molven

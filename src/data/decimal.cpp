#include "data/decimal.h"

#include <QRegularExpression>

#include <boost/multiprecision/cpp_dec_float.hpp>

#include <new>
#include <type_traits>

namespace molven {

namespace {

using Number34 = boost::multiprecision::number<boost::multiprecision::cpp_dec_float<34>, boost::multiprecision::et_off>;

/// 10^places.
Number34 scale(int places) {
    Number34 result = 1;
    for (int i = 0; i < places; ++i) result *= 10;
    return result;
}

} // namespace

struct Decimal::Value {
    Number34 number;
};

Decimal::Decimal(const Value& value) {
    static_assert(sizeof(Value) <= sizeof(room_) && alignof(Value) <= 8);
    static_assert(std::is_trivially_destructible_v<Value>);
    new (room_.data()) Value(value);
}

const Decimal::Value& Decimal::value() const { return *std::launder(reinterpret_cast<const Value*>(room_.data())); }

Decimal::Decimal() : Decimal(0) {}
Decimal::Decimal(int value) : Decimal(Value{value}) {}
Decimal::Decimal(long long value) : Decimal(Value{value}) {}
Decimal::Decimal(const Decimal& other) : Decimal(other.value()) {}

Decimal& Decimal::operator=(const Decimal& other) {
    if (this != &other) new (room_.data()) Value(other.value());
    return *this;
}

long long Decimal::toInteger() const { return static_cast<long long>(value().number); }
bool Decimal::isZero() const { return value().number == 0; }
Decimal Decimal::operator-() const { return Decimal(Value{-value().number}); }
Decimal& Decimal::operator+=(const Decimal& other) { return *this = *this + other; }
Decimal& Decimal::operator-=(const Decimal& other) { return *this = *this - other; }
Decimal operator+(const Decimal& a, const Decimal& b) {
    return Decimal(Decimal::Value{a.value().number + b.value().number});
}
Decimal operator-(const Decimal& a, const Decimal& b) {
    return Decimal(Decimal::Value{a.value().number - b.value().number});
}
Decimal operator*(const Decimal& a, const Decimal& b) {
    return Decimal(Decimal::Value{a.value().number * b.value().number});
}
Decimal operator/(const Decimal& a, const Decimal& b) {
    return Decimal(Decimal::Value{a.value().number / b.value().number});
}
bool operator==(const Decimal& a, const Decimal& b) { return a.value().number == b.value().number; }
std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) {
    return a.value().number.compare(b.value().number) <=> 0;
}

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
    return Decimal(Value{Number34(plain.toStdString())});
}

QString Decimal::toString() const {
    QString text = QString::fromStdString(value().number.str(12, std::ios_base::fixed));
    while (text.endsWith(u'0')) text.chop(1);
    if (text.endsWith(u'.')) text.chop(1);
    return text == u"-0" ? QStringLiteral("0") : text;
}

QString Decimal::toFixed(int places) const {
    const Decimal whole = rounded(places);
    const Number34& cut = whole.value().number;
    if (places == 0) return QString::fromStdString(cut.str(0, std::ios_base::fixed)).section(u'.', 0, 0);
    return QString::fromStdString(cut.str(places, std::ios_base::fixed));
}

Decimal Decimal::rounded(int places) const {
    const Number34 factor = scale(places);
    const Number34 shifted = value().number * factor;
    const Number34 half = Number34(1) / 2;
    return Decimal(Value{(shifted < 0 ? ceil(Number34(shifted - half)) : floor(Number34(shifted + half))) / factor});
}

Decimal Decimal::floored(int places) const {
    const Number34 factor = scale(places);
    return Decimal(Value{floor(Number34(value().number * factor)) / factor});
}

} // namespace molven

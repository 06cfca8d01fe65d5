#include "data/decimal.h"

#include <QRegularExpression>

#include <boost/multiprecision/cpp_dec_float.hpp>

#include <array>
#include <cstdlib>
#include <new>
#include <string>
#include <type_traits>

namespace molven {

namespace {

using Number34 = boost::multiprecision::number<boost::multiprecision::cpp_dec_float<34>, boost::multiprecision::et_off>;

constexpr int MostPlaces = 18;

/// 10^places of either sign, which decimal digits hold exactly.
const Number34& tenTo(int places) {
    static const auto powers = [] {
        std::array<Number34, 2 * MostPlaces + 1> made;
        for (int i = -MostPlaces; i <= MostPlaces; ++i)
            made[static_cast<std::size_t>(i + MostPlaces)] = Number34("1e" + std::to_string(i));
        return made;
    }();
    return powers.at(static_cast<std::size_t>(places + MostPlaces));
}

/// A number as fields mostly keep it, "-12.50"; nothing for one that is longer or written otherwise.
std::optional<Number34> shortNumber(QStringView text) {
    const bool isNegative = text.startsWith(u'-');
    long long digits = 0;
    int count = 0, decimals = -1;
    for (const QChar c : text.sliced(isNegative ? 1 : 0)) {
        if (c == u'.' && decimals < 0) {
            decimals = 0;
            continue;
        }
        if (c < u'0' || c > u'9' || ++count > MostPlaces) return std::nullopt;
        digits = digits * 10 + (c.unicode() - u'0');
        if (decimals >= 0) ++decimals;
    }
    if (count == 0) return std::nullopt;
    const Number34 whole(isNegative ? -digits : digits);
    return decimals > 0 ? whole * tenTo(-decimals) : whole;
}

/// With six decimals, zeros included; nothing for a number that has more, or is long.
std::optional<QString> shortText(const Number34& number) {
    constexpr int Places = 6;
    static const Number34 most("1e18");
    const Number34 shifted = number * tenTo(Places);
    if (shifted >= most || shifted <= -most) return std::nullopt;
    const auto digits = static_cast<long long>(shifted);
    if (shifted != digits) return std::nullopt;
    QString text = QString::number(std::abs(digits)).rightJustified(Places + 1, u'0');
    text.insert(text.size() - Places, u'.');
    return digits < 0 ? u'-' + text : text;
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
    if (const auto number = shortNumber(text)) return Decimal(Value{*number});
    QString plain;
    plain.reserve(text.size());
    for (const QChar c : text)
        if (!c.isSpace()) plain += c == u',' ? QChar(u'.') : c;
    static const QRegularExpression number(QStringLiteral("^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d{1,3})?$"));
    if (!number.match(plain).hasMatch()) return std::nullopt;
    return Decimal(Value{Number34(plain.toStdString())});
}

QString Decimal::toString() const {
    const auto brief = shortText(value().number);
    QString text = brief ? *brief : QString::fromStdString(value().number.str(12, std::ios_base::fixed));
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
    static const Number34 half("0.5");
    const Number34 shifted = value().number * tenTo(places);
    const Number34 whole = shifted < 0 ? ceil(Number34(shifted - half)) : floor(Number34(shifted + half));
    return Decimal(Value{whole * tenTo(-places)});
}

Decimal Decimal::floored(int places) const {
    return Decimal(Value{floor(Number34(value().number * tenTo(places))) * tenTo(-places)});
}

} // namespace molven

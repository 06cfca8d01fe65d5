#pragma once

#include <QString>

#include <array>
#include <compare>
#include <cstddef>
#include <optional>

namespace molven {

/// An exact decimal number: money, quantities, rates. 34 significant digits.
class Decimal {
public:
    Decimal();
    Decimal(int value);
    Decimal(long long value);
    Decimal(const Decimal& other);
    Decimal& operator=(const Decimal& other);

    /// Reads a typed number: blanks around and between digits are ignored, the decimal mark is a point or a comma.
    /// Nothing when the text is not a number; the empty text is not one.
    static std::optional<Decimal> parse(const QString& text);
    /// Reads a stored number, which the engine may have written with an exponent.
    static std::optional<Decimal> read(const QString& text);
    /// The same, 0 for a text that is not one.
    static Decimal fromText(const QString& text);

    /// Shortest text with a point, as stored: "12.5", "-3", "0".
    QString toString() const;
    /// Exactly `places` decimals, with a point, rounded half away from zero.
    QString toFixed(int places) const;
    long long toInteger() const;

    /// Half away from zero, as the trade rounds money.
    Decimal rounded(int places) const;
    /// Rounded down (towards minus infinity), as commissions are cut to the cent.
    Decimal floored(int places) const;

    bool isZero() const;
    Decimal operator-() const;
    Decimal& operator+=(const Decimal& other);
    Decimal& operator-=(const Decimal& other);
    friend Decimal operator+(const Decimal& a, const Decimal& b);
    friend Decimal operator-(const Decimal& a, const Decimal& b);
    friend Decimal operator*(const Decimal& a, const Decimal& b);
    /// The divisor must not be zero.
    friend Decimal operator/(const Decimal& a, const Decimal& b);
    friend bool operator==(const Decimal& a, const Decimal& b);
    friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b);

private:
    struct Value;
    explicit Decimal(const Value& value);
    const Value& value() const;

    /// The library's number, in place: only decimal.cpp knows it, since its header takes seconds to compile.
    alignas(8) std::array<std::byte, 56> room_;
};

} // namespace molven

#pragma once

#include <QString>

#include <boost/multiprecision/cpp_dec_float.hpp>

#include <optional>

namespace molven {

/// An exact decimal number: money, quantities, rates. 34 significant digits.
class Decimal {
public:
    Decimal() = default;
    Decimal(int value) : value_(value) {}
    Decimal(long long value) : value_(value) {}

    /// Reads a typed number: blanks around and between digits are ignored, the decimal mark is a point or a comma.
    /// Nothing when the text is not a number; the empty text is not one.
    static std::optional<Decimal> parse(const QString& text);
    /// Reads a stored number, which the engine may have written with an exponent; 0 for a text that is not one.
    static Decimal fromText(const QString& text);

    /// Shortest text with a point, as stored: "12.5", "-3", "0".
    QString toString() const;
    /// Exactly `places` decimals, with a point, rounded half away from zero.
    QString toFixed(int places) const;
    long long toInteger() const { return static_cast<long long>(value_); }

    /// Half away from zero, as the trade rounds money.
    Decimal rounded(int places) const;
    /// Rounded down (towards minus infinity), as commissions are cut to the cent.
    Decimal floored(int places) const;

    bool isZero() const { return value_ == 0; }
    Decimal operator-() const { return Decimal(Value(-value_)); }
    Decimal& operator+=(const Decimal& other) { return value_ += other.value_, *this; }
    Decimal& operator-=(const Decimal& other) { return value_ -= other.value_, *this; }
    friend Decimal operator+(const Decimal& a, const Decimal& b) { return Decimal(Value(a.value_ + b.value_)); }
    friend Decimal operator-(const Decimal& a, const Decimal& b) { return Decimal(Value(a.value_ - b.value_)); }
    friend Decimal operator*(const Decimal& a, const Decimal& b) { return Decimal(Value(a.value_ * b.value_)); }
    /// The divisor must not be zero.
    friend Decimal operator/(const Decimal& a, const Decimal& b) { return Decimal(Value(a.value_ / b.value_)); }
    friend bool operator==(const Decimal& a, const Decimal& b) { return a.value_ == b.value_; }
    friend auto operator<=>(const Decimal& a, const Decimal& b) {
        const int order = a.value_.compare(b.value_);
        return order <=> 0;
    }

private:
    using Value =
        boost::multiprecision::number<boost::multiprecision::cpp_dec_float<34>, boost::multiprecision::et_off>;
    explicit Decimal(const Value& value) : value_(value) {}
    static std::optional<Decimal> read(const QString& text);

    Value value_ = 0;
};

} // namespace molven

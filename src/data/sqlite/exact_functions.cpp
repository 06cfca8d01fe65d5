#include "data/sqlite/exact_functions.h"

#include "data/decimal.h"

#include <QString>

#include <sqlite3.h>

#include <cmath>
#include <optional>

namespace molven::sqlite {

namespace {

/// A decimal as a whole number and its places: 12.50 is 125 and 1.
struct Scaled {
    long long digits;
    int places;
};

constexpr long long Least = 1'000'000'000; ///< two factors below it fit

/// Nothing for a number of more than six places or of too many digits.
std::optional<Scaled> scaled(double number) {
    constexpr int Places = 6;
    constexpr double Factor = 1e6;
    const double shifted = std::round(number * Factor);
    if (std::abs(shifted) > 1e15 || std::abs(shifted / Factor - number) > std::abs(number) * 1e-14) return std::nullopt;
    Scaled found{static_cast<long long>(shifted), Places};
    for (; found.places > 0 && found.digits % 10 == 0; --found.places) found.digits /= 10;
    return found;
}

long long tenTo(int power) {
    long long result = 1;
    for (; power > 0; --power) result *= 10;
    return result;
}

/// Most products are of short numbers, which whole numbers hold.
std::optional<double> shortProduct(int places, int count, sqlite3_value** factors) {
    Scaled product{1, 0};
    for (int i = 0; i < count; ++i) {
        const auto factor = scaled(sqlite3_value_double(factors[i]));
        if (!factor || std::abs(factor->digits) >= Least || std::abs(product.digits) >= Least) return std::nullopt;
        product = {product.digits * factor->digits, product.places + factor->places};
    }
    if (product.places <= places)
        return static_cast<double>(product.digits) / static_cast<double>(tenTo(product.places));
    const long long divisor = tenTo(product.places - places);
    const long long half = product.digits < 0 ? -divisor / 2 : divisor / 2;
    return static_cast<double>((product.digits + half) / divisor) / static_cast<double>(tenTo(places));
}

/// The same of a quotient.
std::optional<double> shortQuotient(int places, sqlite3_value* dividend, sqlite3_value* divisor) {
    const auto a = scaled(sqlite3_value_double(dividend)), b = scaled(sqlite3_value_double(divisor));
    if (!a || !b || b->digits == 0) return std::nullopt;
    const int shift = places + b->places - a->places;
    long long over = std::abs(a->digits), under = std::abs(b->digits);
    long long& shifted = shift < 0 ? under : over;
    if (shifted >= Least || std::abs(shift) > 8 || over >= Least * Least / 4 || under >= Least) return std::nullopt;
    shifted *= tenTo(std::abs(shift));
    const long long rounded = (2 * over + under) / (2 * under);
    const bool isNegative = (a->digits < 0) != (b->digits < 0);
    return static_cast<double>(isNegative ? -rounded : rounded) / static_cast<double>(tenTo(places));
}

Decimal decimalOf(sqlite3_value* value) {
    return Decimal::fromText(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(value))));
}

void answer(sqlite3_context* context, const Decimal& exact, int places) {
    sqlite3_result_double(context, exact.rounded(places).toString().toDouble());
}

bool hasNull(int count, sqlite3_value** values) {
    for (int i = 0; i < count; ++i)
        if (sqlite3_value_type(values[i]) == SQLITE_NULL) return true;
    return false;
}

void product(sqlite3_context* context, int count, sqlite3_value** arguments) {
    if (hasNull(count, arguments)) return;
    const int places = sqlite3_value_int(arguments[0]);
    if (const auto found = shortProduct(places, count - 1, arguments + 1))
        return sqlite3_result_double(context, *found);
    Decimal exact = 1;
    for (int i = 1; i < count; ++i) exact = exact * decimalOf(arguments[i]);
    answer(context, exact, places);
}

void quotient(sqlite3_context* context, int count, sqlite3_value** arguments) {
    if (hasNull(count, arguments)) return;
    const int places = sqlite3_value_int(arguments[0]);
    if (const auto found = shortQuotient(places, arguments[1], arguments[2]))
        return sqlite3_result_double(context, *found);
    const Decimal divisor = decimalOf(arguments[2]);
    if (!divisor.isZero()) answer(context, decimalOf(arguments[1]) / divisor, places);
}

} // namespace

void addExactFunctions(sqlite3* connection) {
    constexpr int Flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(connection, "product", -1, Flags, nullptr, product, nullptr, nullptr);
    sqlite3_create_function(connection, "quotient", 3, Flags, nullptr, quotient, nullptr, nullptr);
}

} // namespace molven::sqlite

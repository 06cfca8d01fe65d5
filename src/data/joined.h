#pragma once

#include "data/criteria.h"

#include <initializer_list>

namespace molven {

class Database;
class Engine;

/// Several tables of one connection read together, each under a short name of its own: the records of the first, each
/// with the one of every other table that agrees with it.
class Joined {
public:
    Joined(const Database& file, const Table& table, const QString& name);
    /// Records that the other table has nothing for are left out.
    Joined& with(const Database& file, const Table& table, const QString& name, const Criterion& agreement);
    /// They stay, the other table's fields being null.
    Joined& withAny(const Database& file, const Table& table, const QString& name, const Criterion& agreement);

    QString in(Sql& sql) const;
    Engine& engine() const { return *engine_; }

private:
    struct Further {
        QString table; ///< and its short name
        Criterion agreement;
        bool isOptional;
    };
    Joined& add(const Database& file, const Table& table, const QString& name, const Criterion& agreement,
                bool isOptional);

    Engine* engine_;
    QString first_;
    QList<Further> further_;
};

/// A field of the value that a derivation gives it.
struct Derived {
    std::reference_wrapper<const Field> field;
    Expression value;
};

// Values that the engine computes from joined records. Numbers are exact: a product is rounded half away from zero, as
// Decimal::rounded() does.

Expression of(const QString& name, const Field& field);
Expression constant(const QString& text);
Expression constant(const Decimal& number);
Expression orZero(const Expression& number);
Expression orEmpty(const Expression& text);
/// A number written in a text, with a comma or a point.
Expression numberIn(const Expression& text);
Expression plus(const Expression& a, const Expression& b);
Expression minus(const Expression& a, const Expression& b);
/// The factors multiplied, rounded to so many places.
Expression product(int places, std::initializer_list<Expression> factors);
/// One number by another, rounded; null when the divisor is zero.
Expression quotient(int places, const Expression& dividend, const Expression& divisor);
/// The sum of the value over the records of the same `group`, from the first by `order` to this one.
Expression runningSum(const Expression& value, std::initializer_list<Expression> group, const Expression& order);
Expression choice(const Criterion& condition, const Expression& then, const Expression& otherwise);
/// The text from that character on, the first is 1.
Expression tail(const Expression& text, int character);
Expression start(const Expression& text, int characters);
/// "yyyymmdd" of a "dd/mm/yyyy" text.
Expression dayKey(const Field& field);
/// The text up to its first blank, and what follows it.
Expression firstWord(const Expression& text);
Expression otherWords(const Expression& text);

Criterion same(const Expression& a, const Expression& b);
/// The whole text is of this form: "*" stands for any characters, "?" for one, "[0-9]" for a digit.
Criterion matches(const Expression& text, const QString& form);

} // namespace molven

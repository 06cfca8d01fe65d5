#pragma once

#include "data/schema.h"
#include "data/sql.h"

#include <functional>

namespace molven {

/// A piece of a statement, written when the engine that will run it is known.
using Piece = std::function<QString(Sql&)>;

/// A value computed by the engine from a record: a field, the start of a field, fields joined.
class Expression {
public:
    Expression(const Field& field); // a field stands wherever an expression may
    Expression(Piece piece, Field::Kind kind) : piece_(std::move(piece)), kind_(kind) {}

    QString in(Sql& sql) const { return piece_(sql); }
    Field::Kind kind() const { return kind_; }

private:
    Piece piece_;
    Field::Kind kind_;
};

/// The first `count` characters.
Expression left(const Field& field, int count);
/// Without surrounding blanks.
Expression trimmed(const Field& field);
/// "yyyymm" of a "mm/yyyy" text, which sorts by time.
Expression monthKey(const Field& field);
/// Two codes written one after the other.
Expression operator+(const Expression& a, const Expression& b);

/// A condition on the records of one table, rendered with bound parameters. The default one holds for all.
class Criterion {
public:
    Criterion() = default;
    explicit Criterion(Piece piece) : piece_(std::move(piece)) {}

    bool always() const { return !piece_; }
    /// The condition alone; only of one that does not always hold.
    QString in(Sql& sql) const { return piece_(sql); }
    /// " where " and the condition; empty when it always holds.
    QString where(Sql& sql) const { return always() ? QString() : QStringLiteral(" where ") + in(sql); }

private:
    Piece piece_;
};

Criterion operator==(const Expression& expression, const QString& value);
Criterion operator!=(const Expression& expression, const QString& value);
Criterion operator<(const Expression& expression, const QString& value);
Criterion operator<=(const Expression& expression, const QString& value);
Criterion operator>(const Expression& expression, const QString& value);
Criterion operator>=(const Expression& expression, const QString& value);
Criterion operator==(const Number& field, const Decimal& value);
Criterion operator!=(const Number& field, const Decimal& value);

/// The field begins with that text; every record for the empty text. Served by an index on the field.
Criterion startsWith(const Field& field, const QString& text);
/// A name begins with that text, whatever its case and accents; every record for the empty text. Served by an index on
/// the name.
Criterion beginsLike(const Label& name, const QString& text);
/// The text stands somewhere in the field, whatever its case and accents.
Criterion contains(const Expression& expression, const QString& text);
/// The text stands somewhere in the field, whatever the case of its ASCII letters: for codes, and for long fields.
Criterion containsCode(const Expression& expression, const QString& text);
/// As contains() in one of several fields: each record is folded once.
Criterion anyContains(const QList<const Field*>& fields, const QString& text);
/// The value is one of the list.
Criterion isOneOf(const Expression& expression, const QStringList& values);

Criterion operator&&(const Criterion& a, const Criterion& b);
Criterion operator||(const Criterion& a, const Criterion& b);
Criterion operator!(const Criterion& a);

/// Sort order: fields in turn, each ascending unless descending() is asked for.
class Order {
public:
    Order() = default;
    Order(const Field& field) { then(field); }
    Order(std::initializer_list<std::reference_wrapper<const Field>> fields);
    static Order descending(const Field& field);
    /// And then by this.
    Order& then(const Expression& expression);

    bool isEmpty() const { return terms_.isEmpty(); }
    /// This order, or the other one where nothing is asked.
    Order orElse(const Order& other) const { return isEmpty() ? other : *this; }
    /// " order by " and the terms, `last` being one more; empty without any. `turned` is the order from its end.
    QString in(Sql& sql, const QString& last = {}, bool turned = false) const;

private:
    struct Term {
        Expression value;
        bool descends;
    };
    QList<Term> terms_;
};

} // namespace molven

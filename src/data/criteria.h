#pragma once

#include "data/schema.h"

#include <QStringList>

namespace molven {

/// A value computed by the engine from a record: a field, the start of a field, fields joined.
class Expression {
public:
    Expression(const Field& field); // a field stands wherever an expression may
    Expression(const QString& sql, Field::Kind kind) : sql(sql), kind(kind) {}

    QString sql;
    Field::Kind kind;
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
    Criterion(const QString& sql, const QStringList& values) : sql(sql), values(values) {}

    bool always() const { return sql.isEmpty(); }

    QString sql;
    QStringList values;
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
/// The value is one of the list.
Criterion isOneOf(const Expression& expression, const QStringList& values);

Criterion operator&&(const Criterion& a, const Criterion& b);
Criterion operator||(const Criterion& a, const Criterion& b);
Criterion operator!(const Criterion& a);

/// Sort order: fields in turn, each ascending unless descending() is asked for.
class Order {
public:
    Order() = default;
    Order(const Field& field) { terms.append(Expression(field).sql); }
    Order(std::initializer_list<std::reference_wrapper<const Field>> fields);
    static Order descending(const Field& field);
    /// And then by this.
    Order& then(const Expression& expression);

    QStringList terms;
};

} // namespace molven

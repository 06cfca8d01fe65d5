#pragma once

#include "data/schema.h"
#include "data/sql.h"

namespace molven {

/// What the engines write differently. Everything else of a statement is the same on all of them: question marks stand
/// for values, `rowid` is a record's key, and `folded`, `instr`, `product` and `quotient` are functions that every
/// engine has or is given.
class Dialect {
public:
    virtual ~Dialect() = default;

    /// A computed text, comparing as a field of that kind does.
    virtual QString comparable(const QString& text, Field::Kind kind) const = 0;
    /// A term of a sort order: nulls come before all numbers.
    virtual QString sorted(const QString& expression, Field::Kind kind, bool descends) const = 0;
    /// What puts records of the same rank in the order of their keys, where the engine does not by itself; `alone` when
    /// nothing else ranks them.
    virtual QString byKey(bool alone) const = 0;
    /// The expression is one of a list that is bound as one value, for lists of any length.
    virtual QString isOneOf(const QString& expression, Field::Kind kind, const QStringList& list, Sql& sql) const = 0;
    /// The key of a record is one of these.
    virtual QString hasKey(const QStringList& keys, Sql& sql) const = 0;
    /// The whole text is of this form: "*" stands for any characters, "?" for one, "[0-9]" for a digit.
    virtual QString matches(const QString& text, const QString& form) const = 0;
    /// The text with its ASCII letters small.
    virtual QString lowered(const QString& text) const = 0;
    /// The number that a text begins with, 0 without one.
    virtual QString numberIn(const QString& text) const = 0;
    /// A number as a text without useless zeros; a text as it is.
    virtual QString asText(const QString& expression, Field::Kind kind) const = 0;
    /// A text, or nothing, as JSON writes it.
    virtual QString json(const QString& text) const = 0;
    /// Sum of a number as a whole one, in units of its last decimal: exact.
    virtual QString wholeSum(const Number& field) const = 0;
    /// A number and so much more, rounded to its scale.
    virtual QString raised(const Number& field, const Decimal& amount, Sql& sql) const = 0;
    /// Joins the tables in the order in which they are stated, where the engine can be told.
    virtual QString join() const = 0;

    /// The field still holds exactly a value that was read, case included.
    virtual QString same(const Field& field, const QString& value, Sql& sql) const = 0;
    /// The first expression is not yet exactly what the other gives; null differs from everything but null.
    virtual QString differs(const QString& expression, Field::Kind kind, const QString& other) const = 0;

    /// What records are grouped by that are alike in an expression to the letter.
    virtual QString exactly(const QString& expression, Field::Kind kind) const = 0;
    /// The texts of a group, each with a line feed behind.
    virtual QString lines(const QString& text) const = 0;

    /// A column as a table declares it.
    virtual QString definition(const Field& field) const = 0;
    /// Columns that every table has besides its fields.
    virtual QStringList ownColumns() const = 0;
    /// What an insertion ends with, so that the key of the record is known.
    virtual QString keyOfInserted() const = 0;
};

} // namespace molven

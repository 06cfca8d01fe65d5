#pragma once

#include "data/schema.h"

#include <QStringList>

namespace molven {

class Record;

/// What `record[field]` gives on a record that may be written: the value, and what is assigned to it goes into the
/// record. It is constant, so that nothing else changes a copy in the record's place.
template <class F>
class Cell : public F::Value {
public:
    using Value = typename F::Value;
    Cell(Record& record, const F& field, const Value& value) : Value(value), record_(record), field_(field) {}
    void operator=(const Value& value) const;
    void operator=(const Cell& other) const { *this = static_cast<const Value&>(other); }

private:
    Record& record_;
    const F& field_;
};

/// The values of one record of a table, apart from the engine.
class Record {
public:
    /// An empty record: texts empty, numbers null.
    explicit Record(const Table& table);

    const Table& table() const { return *table_; }

    QString operator[](const Text& field) const { return values_[field.position]; }
    QString operator[](const Label& field) const { return values_[field.position]; }
    /// 0 for a null number; isNull() tells them apart.
    Decimal operator[](const Number& field) const;
    const Cell<Text> operator[](const Text& field) { return cell(field); }
    const Cell<Label> operator[](const Label& field) { return cell(field); }
    const Cell<Number> operator[](const Number& field) { return cell(field); }

    bool isNull(const Number& field) const { return values_[field.position].isEmpty(); }

    /// Stored form of any field: a text, or a number with a point (empty when null).
    QString value(const Field& field) const { return values_[field.position]; }
    /// Gives a field its value as fitted() makes it.
    void set(const Field& field, const QString& value);
    void set(const Number& field, const Decimal& value);
    /// A value as the field keeps it: a number rounded to its scale, blank being null. Throws DataError FieldTooSmall
    /// for a text longer than the field or a number of too many digits, NotANumber for a text in a number's place.
    static QString fitted(const Field& field, const QString& value);

    /// Whether a number, rounded to the field's scale, has no more digits than it keeps.
    static bool fits(const Field& field, const Decimal& number);

    /// Copies every field that has the same name in both tables, as it is.
    void copyFrom(const Record& other);
    bool operator==(const Record& other) const { return table_ == other.table_ && values_ == other.values_; }

private:
    friend class RowReader;
    template <class F>
    Cell<F> cell(const F& field) {
        return {*this, field, static_cast<const Record&>(*this)[field]};
    }

    const Table* table_;
    QStringList values_;
};

template <class F>
void Cell<F>::operator=(const Value& value) const {
    record_.set(field_, value);
}

} // namespace molven

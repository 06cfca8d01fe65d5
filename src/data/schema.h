#pragma once

#include "data/decimal.h"

#include <QList>
#include <QString>

#include <functional>
#include <initializer_list>

namespace molven {

class Table;
struct CodeKind;

/// One column of a table. Made only inside a Table; its address is its identity.
class Field {
public:
    enum class Kind {
        Code,  ///< text compared without regard to ASCII case
        Label, ///< text compared without regard to case and sorted in French order
        Number ///< decimal number, may be null
    };

    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;

    const QString name;
    const Kind kind;
    const int size;     ///< characters at most, 0 without limit
    const int scale;    ///< decimals of a number, to which it is rounded when it is given to a record
    const int position; ///< place among the table's fields

    const CodeKind* const code; ///< what a code may be and names; null for what is no code
    const QString unknown;      ///< said of a code that its table lacks; empty when such a code is accepted

protected:
    Field(Table* table, const char* name, Kind kind, int size, int scale = 0, const CodeKind* code = nullptr,
          const char* unknown = "");
};

/// A short text: code, key, flag, date.
class Text : public Field {
public:
    using Value = QString;
    Text(Table* table, const char* name, int size) : Field(table, name, Kind::Code, size) {}
    /// A code of that kind, and what is said of an unknown one.
    Text(Table* table, const char* name, int size, const CodeKind& code, const char* unknown = "")
        : Field(table, name, Kind::Code, size, 0, &code, unknown) {}
};

/// A name, a designation, a comment: anything a person reads and sorts.
class Label : public Field {
public:
    using Value = QString;
    Label(Table* table, const char* name, int size = 0) : Field(table, name, Kind::Label, size) {}
};

/// An amount, a quantity or a rate: 15 digits at most, which the engine keeps exactly.
class Number : public Field {
public:
    using Value = Decimal;
    static constexpr int Digits = 15;
    /// Usual scales.
    static constexpr int Whole = 0;
    static constexpr int Quantity = 3;
    static constexpr int Money = 4; ///< an amount is rounded by its rule; prices and averages have up to four decimals
    static constexpr int Percent = 6;
    static constexpr int Coefficient = 12;

    Number(Table* table, const char* name, int scale) : Field(table, name, Kind::Number, 0, scale) {}
};

/// The fields of a table that rules keep up by themselves, such as a stock, even while a user edits the record: a
/// change that leaves them alone neither writes them nor minds that they moved meanwhile.
class KeptFields {
public:
    KeptFields(Table* table, std::initializer_list<std::reference_wrapper<const Field>> fields);
};

/// Every change of a record of the table is written down in its file's journal, under the fields that name the record
/// to its users.
class Trail {
public:
    Trail(Table* table, std::initializer_list<std::reference_wrapper<const Field>> key);
    Trail(const Trail&) = delete;
    Trail& operator=(const Trail&) = delete;

    QList<const Field*> key;
};

enum class Uniqueness { Repeated, Unique };

/// An index of a table, for the look-ups of the screens.
class Index {
public:
    Index(Table* table, std::initializer_list<std::reference_wrapper<const Field>> fields,
          Uniqueness uniqueness = Uniqueness::Repeated);
    Index(const Index&) = delete;
    Index& operator=(const Index&) = delete;

    QList<const Field*> fields;
    const Uniqueness uniqueness;
};

/// Base of the table types: one struct per table, one member per field. A table object is made once, is
/// never copied, and may stand for the same layout in several database files.
class Table {
public:
    explicit Table(const char* name) : name(QString::fromLatin1(name)) {}
    virtual ~Table() = default;
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    const QString name;
    const QList<const Field*>& fields() const { return fields_; }
    const QList<const Index*>& indexes() const { return indexes_; }
    /// Names of the fields in order, comma separated.
    const QString& columns() const { return columns_; }
    /// The field of that name, or null.
    const Field* field(const QString& fieldName) const;
    /// Null for a table whose changes are not written down.
    const Trail* trail() const { return trail_; }
    /// Whether rules keep that field; see KeptFields.
    bool keeps(const Field& field) const { return kept_.contains(&field); }

private:
    friend class Field;
    friend class KeptFields;
    friend class Trail;
    friend class Index;
    QList<const Field*> fields_;
    QList<const Field*> kept_;
    const Trail* trail_ = nullptr;
    QList<const Index*> indexes_;
    QString columns_;
};

} // namespace molven

#pragma once

#include "data/record.h"

#include <QSqlQuery>
#include <QStringList>

namespace molven {

/// Turns a row of the engine into a record and back into bound values.
class RowReader {
public:
    /// Column list of a table, in field order, comma separated.
    static QString columns(const Table& table);
    /// The record in the query's current row, whose columns begin at `first`.
    static Record read(const QSqlQuery& row, const Table& table, int first);
    /// Values to bind: a null number becomes null, an empty text stays a text.
    static QStringList values(const Record& record);
    static QString bound(const Field& field, const QString& value);
};

} // namespace molven

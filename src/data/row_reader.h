#pragma once

#include "data/dialect.h"
#include "data/record.h"
#include "data/statement.h"

#include <QStringList>

namespace molven {

/// Turns a row of the engine into a record and back into bound values.
class RowReader {
public:
    /// The record in the statement's current row, whose columns begin at `first`.
    static Record read(const Statement& row, const Table& table, int first);
    /// The statement that adds a record.
    static QString insertion(const QString& qualifiedTable, const Table& table, const Dialect& dialect);
    /// Values to bind: a null number becomes null, an empty text stays a text.
    static QStringList values(const Record& record);
    static QString bound(const Field& field, const QString& value);
};

} // namespace molven

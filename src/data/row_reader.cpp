#include "data/row_reader.h"

#include <QVariant>

namespace molven {

QString RowReader::columns(const Table& table) {
    QStringList names;
    for (const Field* field : table.fields()) names.append(field->name);
    return names.join(u',');
}

Record RowReader::read(const QSqlQuery& row, const Table& table, int first) {
    Record record(table);
    for (const Field* field : table.fields()) record.values_[field->position] = row.value(first + field->position).toString();
    return record;
}

QString RowReader::bound(const Field& field, const QString& value) {
    if (!value.isEmpty()) return value;
    return field.kind == Field::Kind::Number ? QString() : QStringLiteral("");
}

QStringList RowReader::values(const Record& record) {
    QStringList result;
    result.reserve(record.table().fields().size());
    for (const Field* field : record.table().fields()) result.append(bound(*field, record.value(*field)));
    return result;
}

} // namespace molven

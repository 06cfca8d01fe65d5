#include "data/row_reader.h"

#include "data/errors.h"

namespace molven {

Record RowReader::read(const Statement& row, const Table& table, int first) {
    Record record(table);
    for (qsizetype i = 0; i < record.values_.size(); ++i) record.values_[i] = row.text(first + static_cast<int>(i));
    return record;
}

QString RowReader::insertion(const QString& qualifiedTable, const Table& table, const Dialect& dialect) {
    QString marks(table.fields().size() * 2 - 1, u',');
    for (qsizetype i = 0; i < marks.size(); i += 2) marks[i] = u'?';
    return QStringLiteral("insert into ") + qualifiedTable + QStringLiteral(" (") + table.columns() +
           QStringLiteral(") values (") + marks + u')' + dialect.keyOfInserted();
}

QString RowReader::bound(const Field& field, const QString& value) {
    if (value.contains(QChar::Null))
        throw Refusal(QStringLiteral("Ce texte contient un caractère qui ne peut être enregistré"), field.name);
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

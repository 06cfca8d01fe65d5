#include "data/database.h"

#include "data/errors.h"
#include "data/row_reader.h"
#include "data/sqlite_engine.h"

#include <QFile>
namespace molven {

namespace {

QString definition(const Field& field) {
    switch (field.kind) {
    case Field::Kind::Number:
        return field.name + QStringLiteral(" numeric");
    case Field::Kind::Label:
        return field.name + QStringLiteral(" text not null default '' collate french");
    case Field::Kind::Code:
        break;
    }
    return field.name + QStringLiteral(" text not null default '' collate nocase");
}

QStringList creation(const Table& table) {
    QStringList columns;
    for (const Field* field : table.fields()) columns.append(definition(*field));
    QStringList statements{QStringLiteral("create table %1 (%2)").arg(table.name, columns.join(u','))};
    int number = 0;
    for (const Index* index : table.indexes()) {
        QStringList names;
        for (const Field* field : index->fields) names.append(field->name);
        statements.append(QStringLiteral("create %1index %2_%3 on %2 (%4)")
                              .arg(index->uniqueness == Uniqueness::Unique ? QStringLiteral("unique ") : QString(),
                                   table.name, QString::number(++number), names.join(u',')));
    }
    return statements;
}

QString where(const Criterion& criterion) {
    return criterion.always() ? QString() : QStringLiteral(" where ") + criterion.sql;
}

} // namespace

void Database::create(const QString& path, const QList<const Table*>& tables) {
    if (QFile::exists(path))
        throw DataError(DataError::CannotOpen, QStringLiteral("Le fichier '%1' existe déjà.").arg(path));
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::New);
    workspace.run(QStringLiteral("pragma application_id=%1").arg(sqlite::ApplicationId));
    workspace.run(QStringLiteral("pragma user_version=%1").arg(sqlite::SchemaVersion));
    Transaction transaction(workspace);
    for (const Table* table : tables)
        for (const QString& statement : creation(*table)) workspace.run(statement);
    transaction.commit();
}

Recordset Database::select(const Table& table, const Criterion& criterion, const Order& order) {
    return Recordset(*workspace_, qualified(table), table, criterion, order);
}

std::optional<Record> Database::find(const Table& table, const Criterion& criterion, const Order& order) {
    QString sql =
        QStringLiteral("select ") + table.columns() + QStringLiteral(" from ") + qualified(table) + where(criterion);
    if (!order.terms.isEmpty()) sql += QStringLiteral(" order by ") + order.terms.join(u',');
    Statement& row = workspace_->run(sql + QStringLiteral(" limit 1"), criterion.values);
    std::optional<Record> found;
    if (row.next()) found = RowReader::read(row, table, 0);
    row.finish();
    return found;
}

QString Database::firstValue(const QString& sql, const QStringList& values) {
    Statement& row = workspace_->run(sql, values);
    const QString value = row.next() ? row.text(0) : QString();
    row.finish();
    return value;
}

QString Database::aggregate(const QString& function, const Table& table, const Criterion& criterion) {
    return firstValue(QStringLiteral("select %1 from %2").arg(function, qualified(table)) + where(criterion),
                      criterion.values);
}

qint64 Database::count(const Table& table, const Criterion& criterion) {
    return aggregate(QStringLiteral("count(*)"), table, criterion).toLongLong();
}

QString Database::greatest(const Table& table, const Field& field, const Criterion& criterion) {
    return aggregate(QStringLiteral("max(%1)").arg(field.name), table, criterion);
}

Decimal Database::sum(const Table& table, const Number& field, const Criterion& criterion) {
    return Decimal::fromText(aggregate(QStringLiteral("sum(%1)").arg(field.name), table, criterion));
}

QHash<QString, qint64> Database::countBy(const Table& table, const Field& field, const Criterion& criterion) {
    Statement& rows = workspace_->run(QStringLiteral("select %1,count(*) from %2").arg(field.name, qualified(table)) +
                                          where(criterion) + QStringLiteral(" group by ") + field.name,
                                      criterion.values);
    QHash<QString, qint64> counts;
    while (rows.next()) counts.insert(rows.text(0), rows.integer(1));
    return counts;
}

void Database::insert(const Record& record) {
    const Table& table = record.table();
    workspace_->run(RowReader::insertion(qualified(table), table), RowReader::values(record));
}

qint64 Database::update(const Table& table, const QList<Assignment>& assignments, const Criterion& criterion) {
    QStringList sets;
    QStringList values;
    for (const Assignment& assignment : assignments) {
        Record::requireRoom(assignment.field, assignment.value);
        sets.append(assignment.field.get().name + QStringLiteral("=?"));
        values.append(RowReader::bound(assignment.field, assignment.value));
    }
    return workspace_
        ->run(QStringLiteral("update %1 set %2").arg(qualified(table), sets.join(u',')) + where(criterion),
              values + criterion.values)
        .changed();
}

qint64 Database::remove(const Table& table, const Criterion& criterion) {
    return workspace_->run(QStringLiteral("delete from ") + qualified(table) + where(criterion), criterion.values)
        .changed();
}

qint64 Database::copyField(const Table& table, const Field& to, const Field& from, const Criterion& criterion) {
    return workspace_
        ->run(QStringLiteral("update %1 set %2=%3").arg(qualified(table), to.name, from.name) + where(criterion),
              criterion.values)
        .changed();
}

bool Database::hasTable(const Table& table) { return !columns(table).isEmpty(); }

QStringList Database::columns(const Table& table) {
    Statement& rows = workspace_->run(QStringLiteral("pragma %1.table_info(%2)").arg(schema_, table.name));
    QStringList names;
    while (rows.next()) names.append(rows.text(1));
    return names;
}

void Database::addColumn(const Table& table, const Field& field, const QString& value) {
    Transaction transaction(*workspace_);
    workspace_->run(QStringLiteral("alter table %1 add column %2").arg(qualified(table), definition(field)));
    update(table, {{field, value}}, {});
    transaction.commit();
}

QStringList Database::integrityFaults() {
    QStringList faults;
    try {
        Statement& rows = workspace_->run(QStringLiteral("pragma %1.integrity_check").arg(schema_));
        while (rows.next()) faults.append(rows.text(0));
    } catch (const DataError& error) {
        return {error.description};
    }
    return faults == QStringList(QStringLiteral("ok")) ? QStringList() : faults;
}

} // namespace molven

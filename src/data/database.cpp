#include "data/database.h"

#include "data/errors.h"
#include "data/row_reader.h"
#include "data/sqlite_engine.h"

#include <QFile>
#include <QVariant>

namespace molven {

namespace {

QString definition(const Field& field) {
    switch (field.kind) {
    case Field::Kind::Number: return field.name + QStringLiteral(" numeric");
    case Field::Kind::Label: return field.name + QStringLiteral(" text not null default '' collate french");
    case Field::Kind::Code: break;
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
    workspace.connectTo(path);
    workspace.run(QStringLiteral("pragma application_id=%1").arg(sqlite::ApplicationId)).finish();
    workspace.run(QStringLiteral("pragma user_version=%1").arg(sqlite::SchemaVersion)).finish();
    Transaction transaction(workspace);
    for (const Table* table : tables)
        for (const QString& statement : creation(*table)) workspace.run(statement).finish();
    transaction.commit();
}

Recordset Database::select(const Table& table, const Criterion& criterion, const Order& order) {
    return Recordset(*workspace_, qualified(table), table, criterion, order);
}

std::optional<Record> Database::find(const Table& table, const Criterion& criterion, const Order& order) {
    QString sql = QStringLiteral("select %1 from %2").arg(RowReader::columns(table), qualified(table)) + where(criterion);
    if (!order.terms.isEmpty()) sql += QStringLiteral(" order by ") + order.terms.join(u',');
    QSqlQuery& row = workspace_->run(sql + QStringLiteral(" limit 1"), criterion.values);
    std::optional<Record> found;
    if (row.next()) found = RowReader::read(row, table, 0);
    row.finish();
    return found;
}

qint64 Database::count(const Table& table, const Criterion& criterion) {
    QSqlQuery& row = workspace_->run(QStringLiteral("select count(*) from ") + qualified(table) + where(criterion),
                                     criterion.values);
    const qint64 result = row.next() ? row.value(0).toLongLong() : 0;
    row.finish();
    return result;
}

QString Database::greatest(const Table& table, const Field& field, const Criterion& criterion) {
    QSqlQuery& row =
        workspace_->run(QStringLiteral("select max(%1) from %2").arg(field.name, qualified(table)) + where(criterion),
                        criterion.values);
    const QString result = row.next() ? row.value(0).toString() : QString();
    row.finish();
    return result;
}

Decimal Database::sum(const Table& table, const Number& field, const Criterion& criterion) {
    QSqlQuery& row =
        workspace_->run(QStringLiteral("select sum(%1) from %2").arg(field.name, qualified(table)) + where(criterion),
                        criterion.values);
    const Decimal result = row.next() ? Decimal::fromText(row.value(0).toString()) : Decimal();
    row.finish();
    return result;
}

QHash<QString, qint64> Database::countBy(const Table& table, const Field& field, const Criterion& criterion) {
    QSqlQuery& rows = workspace_->run(QStringLiteral("select %1,count(*) from %2").arg(field.name, qualified(table)) +
                                          where(criterion) + QStringLiteral(" group by ") + field.name,
                                      criterion.values);
    QHash<QString, qint64> counts;
    while (rows.next()) counts.insert(rows.value(0).toString(), rows.value(1).toLongLong());
    rows.finish();
    return counts;
}

void Database::insert(const Record& record) {
    const Table& table = record.table();
    const QString marks = QStringList(table.fields().size(), QStringLiteral("?")).join(u',');
    workspace_
        ->run(QStringLiteral("insert into %1 (%2) values (%3)").arg(qualified(table), RowReader::columns(table), marks),
              RowReader::values(record))
        .finish();
}

qint64 Database::update(const Table& table, const QList<Assignment>& assignments, const Criterion& criterion) {
    QStringList sets;
    QStringList values;
    for (const Assignment& assignment : assignments) {
        Record(table).set(assignment.field, assignment.value);
        sets.append(assignment.field.get().name + QStringLiteral("=?"));
        values.append(RowReader::bound(assignment.field, assignment.value));
    }
    QSqlQuery& row =
        workspace_->run(QStringLiteral("update %1 set %2").arg(qualified(table), sets.join(u',')) + where(criterion),
                        values + criterion.values);
    const qint64 changed = row.numRowsAffected();
    row.finish();
    return changed;
}

qint64 Database::remove(const Table& table, const Criterion& criterion) {
    QSqlQuery& row =
        workspace_->run(QStringLiteral("delete from ") + qualified(table) + where(criterion), criterion.values);
    const qint64 removed = row.numRowsAffected();
    row.finish();
    return removed;
}

bool Database::hasTable(const Table& table) { return !columns(table).isEmpty(); }

QStringList Database::columns(const Table& table) {
    QSqlQuery& rows = workspace_->run(QStringLiteral("pragma %1.table_info(%2)").arg(schema_, table.name));
    QStringList names;
    while (rows.next()) names.append(rows.value(1).toString());
    rows.finish();
    return names;
}

void Database::addColumn(const Table& table, const Field& field, const QString& value) {
    Transaction transaction(*workspace_);
    workspace_->run(QStringLiteral("alter table %1 add column %2").arg(qualified(table), definition(field))).finish();
    update(table, {{field, value}}, {});
    transaction.commit();
}

QStringList Database::integrityFaults() {
    QStringList faults;
    try {
        QSqlQuery& rows = workspace_->run(QStringLiteral("pragma %1.integrity_check").arg(schema_));
        while (rows.next()) faults.append(rows.value(0).toString());
        rows.finish();
    } catch (const DataError& error) {
        return {error.description};
    }
    return faults == QStringList(QStringLiteral("ok")) ? QStringList() : faults;
}

QString Database::firstValue(const QString& sql) {
    QSqlQuery& row = workspace_->run(sql);
    const QString value = row.next() ? row.value(0).toString() : QString();
    row.finish();
    return value;
}

} // namespace molven

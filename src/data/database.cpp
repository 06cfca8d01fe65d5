#include "data/database.h"

#include "data/errors.h"
#include "data/joined.h"
#include "data/journal.h"
#include "data/layout.h"
#include "data/row_reader.h"

#include <QFile>

namespace molven {

namespace {

QString where(const Criterion& criterion) {
    return criterion.always() ? QString() : QStringLiteral(" where ") + criterion.sql;
}

QString namesOf(const QList<const Field*>& fields) {
    QStringList names;
    for (const Field* field : fields) names.append(field->name);
    return names.join(u',');
}

QStringList valuesOf(const Statement& row, int count) {
    QStringList values;
    for (int i = 0; i < count; ++i) values.append(row.text(i));
    return values;
}

} // namespace

void Database::create(const QString& path, const QList<const Table*>& tables) {
    if (QFile::exists(path))
        throw DataError(DataError::CannotOpen, QStringLiteral("Le fichier '%1' existe déjà.").arg(path));
    Layout::create(path, tables);
}

Recordset Database::select(const Table& table, const Criterion& criterion, const Order& order) {
    return Recordset(*workspace_, {qualified(table)}, table, criterion, order);
}

Recordset Database::selectWith(Database also, const Table& table, const Criterion& criterion, const Order& order) {
    return Recordset(*workspace_, {qualified(table), also.qualified(table)}, table, criterion, order);
}

std::optional<Record> Database::find(const Table& table, const Criterion& criterion, const Order& order) {
    QList<Record> found = first(1, table, criterion, order);
    return found.isEmpty() ? std::nullopt : std::optional<Record>(found.takeFirst());
}

QList<Record> Database::first(int most, const Table& table, const Criterion& criterion, const Order& order) {
    QString sql =
        QStringLiteral("select ") + table.columns() + QStringLiteral(" from ") + qualified(table) + where(criterion);
    if (!order.terms.isEmpty()) sql += QStringLiteral(" order by ") + order.terms.join(u',');
    Statement& rows = workspace_->run(sql + QStringLiteral(" limit %1").arg(most), criterion.values);
    QList<Record> found;
    while (rows.next()) found.append(RowReader::read(rows, table, 0));
    rows.finish();
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
    QHash<QString, qint64> counts;
    const auto groups = countBy(table, QList<const Field*>{&field}, criterion);
    for (auto group = groups.begin(); group != groups.end(); ++group) counts.insert(group.key().first(), group.value());
    return counts;
}

QHash<QStringList, qint64> Database::countBy(const Table& table, const QList<const Field*>& fields,
                                             const Criterion& criterion) {
    const QString names = namesOf(fields);
    Statement& rows = workspace_->run(QStringLiteral("select %1,count(*) from %2").arg(names, qualified(table)) +
                                          where(criterion) + QStringLiteral(" group by ") + names,
                                      criterion.values);
    const int count = static_cast<int>(fields.size());
    QHash<QStringList, qint64> counts;
    while (rows.next()) counts.insert(valuesOf(rows, count), rows.integer(count));
    return counts;
}

QList<QStringList> Database::values(const Table& table, const QList<const Field*>& fields, const Criterion& criterion) {
    Statement& rows =
        workspace_->run(QStringLiteral("select %1 from %2").arg(namesOf(fields), qualified(table)) + where(criterion),
                        criterion.values);
    QList<QStringList> found;
    while (rows.next()) found.append(valuesOf(rows, static_cast<int>(fields.size())));
    return found;
}

qint64 Database::changesElsewhere() { return workspace_->mark(schema_, "data_version"); }
QHash<QString, Decimal> Database::sumBy(const Table& table, const Field& field, const Number& summed,
                                        const Criterion& criterion) {
    Statement& rows =
        workspace_->run(QStringLiteral("select %1,sum(%2) from %3").arg(field.name, summed.name, qualified(table)) +
                            where(criterion) + QStringLiteral(" group by ") + field.name,
                        criterion.values);
    QHash<QString, Decimal> sums;
    while (rows.next()) sums.insert(rows.text(0), Decimal::fromText(rows.text(1)).rounded(summed.scale));
    return sums;
}

QList<Summary> Database::summary(const Table& table, const QList<const Field*>& groups,
                                 const QList<const Number*>& sums, const Criterion& criterion) {
    const QString names = namesOf(groups);
    QStringList columns{QStringLiteral("count(*)")};
    // Whole numbers add up exactly, binary fractions do not.
    for (const Number* number : sums)
        columns.append(QStringLiteral("sum(cast(round(%1*1e%2) as integer))").arg(number->name).arg(number->scale));
    if (!names.isEmpty()) columns.append(names);
    const QString grouped =
        names.isEmpty() ? QStringLiteral(" having count(*)>0") : QStringLiteral(" group by %1 order by %1").arg(names);
    Statement& rows = workspace_->run(QStringLiteral("select %1 from %2").arg(columns.join(u','), qualified(table)) +
                                          where(criterion) + grouped,
                                      criterion.values);
    QList<Summary> found;
    while (rows.next()) {
        Summary summary;
        summary.count = rows.integer(0);
        int column = 0;
        for (const Number* number : sums)
            summary.sums.append(
                Decimal::fromText(QStringLiteral("%1e-%2").arg(rows.integer(++column)).arg(number->scale)));
        for (qsizetype i = 0; i < groups.size(); ++i) summary.group.append(rows.text(++column));
        found.append(summary);
    }
    return found;
}

qint64 Database::derive(const Table& table, const QList<Derived>& values, const QList<Derived>& further,
                        const Joined& source, const Criterion& criterion) {
    QStringList names, expressions, named;
    for (const Derived& derived : values) {
        names.append(derived.field.get().name);
        named.append(derived.value.sql + QStringLiteral(" as ") + names.last());
    }
    expressions = names;
    for (const Derived& derived : further) {
        names.append(derived.field.get().name);
        expressions.append(derived.value.sql);
    }
    const QString sql = QStringLiteral("insert into %1 (%2) select %3 from (select %4 from %5%6)")
                            .arg(qualified(table), names.join(u','), expressions.join(u','), named.join(u','),
                                 source.sql(), where(criterion));
    return workspace_->run(sql, source.values() + criterion.values).changed();
}

QHash<QString, QString> Database::valuesBy(const Table& table, const Field& field, const Field& value,
                                           const Criterion& criterion) {
    Statement& rows = workspace_->run(
        QStringLiteral("select %1,%2 from %3").arg(field.name, value.name, qualified(table)) + where(criterion),
        criterion.values);
    QHash<QString, QString> values;
    while (rows.next()) values.insert(rows.text(0), Record::fitted(value, rows.text(1)));
    return values;
}

void Database::insert(const Record& record) {
    write(record.table(), RowReader::insertion(qualified(record.table()), record.table()), RowReader::values(record),
          [&](Journal& journal) { journal.added(record); });
}

qint64 Database::update(const Table& table, const QList<Assignment>& assignments, const Criterion& criterion) {
    QStringList sets;
    QStringList values;
    for (const Assignment& assignment : assignments) {
        const Field& field = assignment.field;
        sets.append(field.name + QStringLiteral("=?"));
        values.append(RowReader::bound(field, Record::fitted(field, assignment.value)));
    }
    return write(table, QStringLiteral("update %1 set %2").arg(qualified(table), sets.join(u',')) + where(criterion),
                 values + criterion.values, [&](Journal& journal) { journal.changing(assignments, criterion); });
}

qint64 Database::remove(const Table& table, const Criterion& criterion) {
    return write(table, QStringLiteral("delete from ") + qualified(table) + where(criterion), criterion.values,
                 [&](Journal& journal) { journal.removing(criterion); });
}

qint64 Database::moveTo(Database target, const Table& table, const Criterion& criterion) {
    Transaction transaction(*workspace_);
    const QString source = qualified(table);
    const QString sql = QStringLiteral("insert into %1 (%2) select %2 from %3%4 order by rowid")
                            .arg(target.qualified(table), table.columns(), source, where(criterion));
    const qint64 arrived =
        target.write(table, sql, criterion.values, [&](Journal& journal) { journal.arriving(source, criterion); });
    const qint64 left = remove(table, criterion);
    if (arrived != left)
        throw DataError(DataError::Undone, QStringLiteral("Le déplacement n'est pas complet, il a été annulé."));
    transaction.commit();
    return left;
}

qint64 Database::copyField(const Table& table, const Field& to, const Field& from, const Criterion& criterion) {
    return write(table,
                 QStringLiteral("update %1 set %2=%3").arg(qualified(table), to.name, from.name) + where(criterion),
                 criterion.values, [&](Journal& journal) { journal.copying(to, from, criterion); });
}

qint64 Database::write(const Table& table, const QString& sql, const QStringList& values,
                       const std::function<void(Journal&)>& tell) {
    return Journal::write(*workspace_, qualified(table), table, sql, values, tell).changed;
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
    workspace_->run(QStringLiteral("alter table %1 add column %2").arg(qualified(table), Layout::definition(field)));
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

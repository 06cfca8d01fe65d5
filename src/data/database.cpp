#include "data/database.h"

#include "data/dialect.h"
#include "data/engine.h"
#include "data/errors.h"
#include "data/joined.h"
#include "data/journal.h"
#include "data/layout.h"
#include "data/row_reader.h"

#include <QScopeGuard>

namespace molven {

namespace {

const QString ByKey = QStringLiteral("rowid");

const QString CountOfAll = QStringLiteral("count(*)");
QString greatestOf(const Field& field) { return QStringLiteral("max(%1)").arg(field.name); }

QString namesOf(const QList<const Field*>& fields) {
    QStringList names;
    for (const Field* field : fields) names.append(field->name);
    return names.join(u',');
}

/// The statement for whole records of a table; those of the same rank come by `last`.
QString wholeRecords(const Table& table, const QString& name, const Criterion& criterion, const Order& order,
                     const QString& last, Sql& sql) {
    const QString where = criterion.where(sql), sorted = order.in(sql, last);
    return QStringLiteral("select %1 from %2%3%4").arg(table.columns(), name, where, sorted);
}

QStringList valuesOf(const Statement& row, int count) {
    QStringList values;
    for (int i = 0; i < count; ++i) values.append(row.text(i));
    return values;
}

} // namespace

void Database::create(const QString& path, const QList<const Table*>& tables) {
    if (Engine::exists(path))
        throw DataError(DataError::CannotOpen, QStringLiteral("Le fichier '%1' existe déjà.").arg(path));
    Layout::create(path, tables);
}

bool Database::exists(const QString& path) { return Engine::exists(path); }

void Database::discard(const QString& path) { Engine::discard(path); }

QString Database::canonical(const QString& path) { return Engine::canonical(path); }

Recordset Database::select(const Table& table, const Criterion& criterion, const Order& order) {
    return Recordset(*workspace_, {engine_, {qualified(table)}, &table, criterion, order});
}

Recordset Database::selectWith(const QList<Database>& also, const Table& table, const Criterion& criterion,
                               const Order& order) {
    QStringList tables{qualified(table)};
    for (const Database& file : also) tables.append(file.qualified(table));
    return Recordset(*workspace_, {engine_, tables, &table, criterion, order});
}

std::optional<Record> Database::find(const Table& table, const Criterion& criterion, const Order& order) {
    QList<Record> found = first(1, table, criterion, order);
    return found.isEmpty() ? std::nullopt : std::optional<Record>(found.takeFirst());
}

QString Database::selection(const Table& table, const Criterion& criterion, const Order& order, Sql& sql) const {
    return wholeRecords(table, qualified(table), criterion, order,
                        sql.dialect.byKey(order.isEmpty() && !criterion.always()), sql);
}

QString Database::limited(const QString& selection, int most) {
    return selection + QStringLiteral(" limit ") + QString::number(most);
}

void Database::foresee(const Table& table, const QList<Criterion>& criteria) {
    if (!engine_->isFar()) return;
    QMap<QString, QList<QStringList>> questions; // by condition: the rest is long, and the same
    QMap<QString, Criterion> ones;
    for (const Criterion& criterion : criteria) {
        Sql sql{engine_->dialect()};
        const QString condition = criterion.where(sql);
        questions[condition].append(sql.values);
        ones.insert(condition, criterion);
    }
    for (auto question = questions.begin(); question != questions.end(); ++question) {
        Sql sql{engine_->dialect()};
        engine_->foresee(limited(selection(table, ones[question.key()], {}, sql), 1), question.value());
    }
}

void Database::foreseeCount(const Table& table, const Criterion& criterion) {
    foreseeAggregate(CountOfAll, table, criterion);
}

void Database::foreseeGreatest(const Table& table, const Field& field, const Criterion& criterion) {
    foreseeAggregate(greatestOf(field), table, criterion);
}

void Database::foreseeAggregate(const QString& function, const Table& table, const Criterion& criterion) {
    if (!engine_->isFar()) return;
    Sql sql{engine_->dialect()};
    const QString text = aggregation(function, table, criterion, sql);
    engine_->foresee(text, {sql.values});
}

void Database::foreseeAll(const Table& table, const Criterion& criterion, const Order& order) {
    if (!engine_->isFar()) return;
    Sql sql{engine_->dialect()};
    const QString text = wholeRecords(table, qualified(table), criterion, order, ByKey, sql);
    engine_->foresee(text, {sql.values});
}

QList<Record> Database::first(int most, const Table& table, const Criterion& criterion, const Order& order) {
    Sql sql{engine_->dialect()};
    const QString text = limited(selection(table, criterion, order, sql), most);
    return records(table, text, sql.values);
}

QList<Record> Database::all(const Table& table, const Criterion& criterion, const Order& order) {
    Sql sql{engine_->dialect()};
    const QString text = wholeRecords(table, qualified(table), criterion, order, ByKey, sql);
    return records(table, text, sql.values);
}

QList<Record> Database::records(const Table& table, const QString& selection, const QStringList& values) {
    Statement& rows = engine_->run(selection, values);
    QList<Record> found;
    while (rows.next()) found.append(RowReader::read(rows, table, 0));
    rows.finish();
    return found;
}

QString Database::firstValue(const QString& sql, const QStringList& values) {
    engine_->lookIn(schema_);
    const auto back = qScopeGuard([this] { engine_->lookNowhere(); });
    return value(sql, values);
}

QString Database::value(const QString& sql, const QStringList& values) {
    Statement& row = engine_->run(sql, values);
    const QString found = row.next() ? row.text(0) : QString();
    row.finish();
    return found;
}

QString Database::aggregation(const QString& function, const Table& table, const Criterion& criterion, Sql& sql) const {
    const QString where = criterion.where(sql);
    return QStringLiteral("select %1 from %2%3").arg(function, qualified(table), where);
}

QString Database::aggregate(const QString& function, const Table& table, const Criterion& criterion) {
    Sql sql{engine_->dialect()};
    const QString text = aggregation(function, table, criterion, sql);
    return value(text, sql.values);
}

qint64 Database::count(const Table& table, const Criterion& criterion) {
    return aggregate(CountOfAll, table, criterion).toLongLong();
}

QString Database::greatest(const Table& table, const Field& field, const Criterion& criterion) {
    return aggregate(greatestOf(field), table, criterion);
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
    Sql sql{engine_->dialect()};
    const QString where = criterion.where(sql);
    Statement& rows = engine_->run(
        QStringLiteral("select %1,count(*) from %2%3 group by %1").arg(names, qualified(table), where), sql.values);
    const int count = static_cast<int>(fields.size());
    QHash<QStringList, qint64> counts;
    while (rows.next()) counts.insert(valuesOf(rows, count), rows.integer(count));
    return counts;
}

QList<QStringList> Database::values(const Table& table, const QList<const Field*>& fields, const Criterion& criterion) {
    Sql sql{engine_->dialect()};
    const QString where = criterion.where(sql);
    Statement& rows =
        engine_->run(QStringLiteral("select %1 from %2%3").arg(namesOf(fields), qualified(table), where), sql.values);
    QList<QStringList> found;
    while (rows.next()) found.append(valuesOf(rows, static_cast<int>(fields.size())));
    return found;
}

qint64 Database::changesElsewhere() { return engine_->changesElsewhere(schema_); }

QHash<QString, Decimal> Database::sumBy(const Table& table, const Field& field, const Number& summed,
                                        const Criterion& criterion) {
    Sql sql{engine_->dialect()};
    const QString where = criterion.where(sql);
    Statement& rows = engine_->run(
        QStringLiteral("select %1,sum(%2) from %3%4 group by %1").arg(field.name, summed.name, qualified(table), where),
        sql.values);
    QHash<QString, Decimal> sums;
    while (rows.next()) sums.insert(rows.text(0), Decimal::fromText(rows.text(1)).rounded(summed.scale));
    return sums;
}

QList<Summary> Database::summary(const Table& table, const QList<const Field*>& groups,
                                 const QList<const Number*>& sums, const Criterion& criterion) {
    const QString names = namesOf(groups);
    Sql sql{engine_->dialect()};
    QStringList columns{CountOfAll};
    for (const Number* number : sums) columns.append(sql.dialect.wholeSum(*number));
    if (!names.isEmpty()) columns.append(names);
    const QString grouped =
        names.isEmpty() ? QStringLiteral(" having count(*)>0") : QStringLiteral(" group by %1 order by %1").arg(names);
    const QString where = criterion.where(sql);
    Statement& rows = engine_->run(
        QStringLiteral("select %1 from %2%3%4").arg(columns.join(u','), qualified(table), where, grouped), sql.values);
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
    Sql sql{source.engine().dialect()};
    for (const Derived& derived : values) {
        names.append(derived.field.get().name);
        named.append(derived.value.in(sql) + QStringLiteral(" as ") + names.last());
    }
    const QString from = source.in(sql), where = criterion.where(sql);
    const QString selection = QStringLiteral("select %1 from %2%3").arg(named.join(u','), from, where);
    if (&source.engine() != engine_)
        return copyDerived(table, names, values, further, source.engine().run(selection, sql.values));
    expressions = names;
    Sql own{engine_->dialect()};
    for (const Derived& derived : further) {
        names.append(derived.field.get().name);
        expressions.append(derived.value.in(own));
    }
    const QString text = QStringLiteral("insert into %1 (%2) select %3 from (%4) as derived")
                             .arg(qualified(table), names.join(u','), expressions.join(u','), selection);
    return engine_->write(text, sql.values);
}

qint64 Database::copyDerived(const Table& table, const QStringList& names, const QList<Derived>& values,
                             const QList<Derived>& further, Statement& rows) {
    QStringList marks, all = names, expressions = names;
    for (const Derived& derived : values) {
        const bool isNumber = derived.field.get().kind == Field::Kind::Number;
        marks.append((isNumber ? QStringLiteral("cast(? as numeric) as ") : QStringLiteral("? as ")) +
                     derived.field.get().name);
    }
    Sql own{engine_->dialect()};
    for (const Derived& derived : further) {
        all.append(derived.field.get().name);
        expressions.append(derived.value.in(own));
    }
    const QString text = QStringLiteral("insert into %1 (%2) select %3 from (select %4) as derived")
                             .arg(qualified(table), all.join(u','), expressions.join(u','), marks.join(u','));
    qint64 count = 0;
    for (; rows.next(); ++count) {
        QStringList row = valuesOf(rows, static_cast<int>(values.size()));
        for (qsizetype i = 0; i < row.size(); ++i) row[i] = RowReader::bound(values[i].field, row[i]);
        engine_->write(text, row);
    }
    return count;
}

QHash<QString, QString> Database::valuesBy(const Table& table, const Field& field, const Field& value,
                                           const Criterion& criterion) {
    Sql sql{engine_->dialect()};
    const QString where = criterion.where(sql);
    Statement& rows = engine_->run(
        QStringLiteral("select %1,%2 from %3%4").arg(field.name, value.name, qualified(table), where), sql.values);
    QHash<QString, QString> values;
    while (rows.next()) values.insert(rows.text(0), Record::fitted(value, rows.text(1)));
    return values;
}

void Database::insert(const Record& record) { insert(QList<Record>{record}); }

void Database::insert(const QList<Record>& records) {
    if (records.isEmpty()) return;
    const Table& table = records.first().table();
    const QString target = qualified(table), sql = RowReader::insertion(target, table, engine_->dialect());
    const auto add = [&] {
        for (const Record& record : records.first(records.size() - 1)) engine_->write(sql, RowReader::values(record));
        return engine_->write(sql, RowReader::values(records.last()));
    };
    Journal::write({*workspace_, *engine_, target, table}, add, [&](Journal& journal) { journal.added(records); });
}

Written Database::update(const Table& table, const QList<Assignment>& assignments, const Criterion& criterion) {
    return Journal::update({*workspace_, *engine_, qualified(table), table}, Journal::changesOf(assignments),
                           criterion);
}

Written Database::remove(const Table& table, const Criterion& criterion) {
    Sql sql{engine_->dialect()};
    const QString where = criterion.where(sql);
    return write(table, QStringLiteral("delete from ") + qualified(table) + where, sql.values,
                 [&](Journal& journal) { journal.removing(criterion); });
}

qint64 Database::moveTo(Database target, const Table& table, const Criterion& criterion) {
    Transaction transaction(*workspace_);
    const QString source = qualified(table);
    Sql sql{engine_->dialect()};
    const QString where = criterion.where(sql);
    const QString text = QStringLiteral("insert into %1 (%2) select %2 from %3%4 order by rowid")
                             .arg(target.qualified(table), table.columns(), source, where);
    const Written arrived =
        target.write(table, text, sql.values, [&](Journal& journal) { journal.arriving(source, criterion); });
    const qint64 left = remove(table, criterion);
    if (arrived.changed() != left)
        throw DataError(DataError::Undone, QStringLiteral("Le déplacement n'est pas complet, il a été annulé."));
    transaction.commit();
    return left;
}

Written Database::copyField(const Table& table, const Field& to, const Field& from, const Criterion& criterion) {
    const Piece after = [&](Sql&) { return from.name; };
    return Journal::update({*workspace_, *engine_, qualified(table), table}, {{&to, after}}, criterion);
}

Written Database::addTo(const Table& table, const Number& field, const Decimal& amount, const Criterion& criterion) {
    const Piece after = [&](Sql& sql) { return sql.dialect.raised(field, amount, sql); };
    return Journal::update({*workspace_, *engine_, qualified(table), table}, {{&field, after}}, criterion);
}

Written Database::write(const Table& table, const QString& sql, const QStringList& values,
                        const std::function<void(Journal&)>& tell) {
    return Journal::write({*workspace_, *engine_, qualified(table), table}, sql, values, tell);
}

bool Database::hasTable(const Table& table) { return !columns(table).isEmpty(); }

QStringList Database::columns(const Table& table) { return engine_->columns(schema_, table); }

void Database::addColumn(const Table& table, const Field& field, const QString& value) {
    Transaction transaction(*workspace_);
    engine_->run(
        QStringLiteral("alter table %1 add column %2").arg(qualified(table), engine_->dialect().definition(field)));
    update(table, {{field, value}}, {});
    transaction.commit();
}

QStringList Database::integrityFaults() {
    try {
        return engine_->integrityFaults(schema_);
    } catch (const DataError& error) {
        return {error.description};
    }
}

} // namespace molven

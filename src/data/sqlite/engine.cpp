#include "data/sqlite/engine.h"

#include "data/errors.h"
#include "data/sqlite/connection.h"
#include "data/sqlite/dialect.h"
#include "data/sqlite/statement.h"

#include <sqlite3.h>

namespace molven::sqlite {

Engine::~Engine() {
    prepared_.clear();
    sqlite3_close(connection_);
}

const Dialect& Engine::dialect() const { return sqlite::dialect(); }

QString Engine::attach(const QString& path) {
    const QString schema = attached_ == 0 ? QStringLiteral("main") : QStringLiteral("f%1").arg(attached_);
    if (connection_)
        run(QStringLiteral("attach database ? as ") + schema, {path});
    else
        notes_.addTo(connection_ = connect(path, opening_));
    ++attached_;
    if (opening_ == Opening::New) return schema;
    run(QStringLiteral("pragma %1.synchronous=full").arg(schema));
    // A page that leaves the memory before the commit costs a flush of the journal to the disk: a push of prices with
    // its entries stays within 64 MB.
    run(QStringLiteral("pragma %1.cache_spill=16384").arg(schema));
    return schema;
}

void Engine::detach(const QString& schema) { run(QStringLiteral("detach database ") + schema); }

qint64 Engine::mark(const QString& schema, const char* name) {
    molven::Statement& row = run(QStringLiteral("pragma %1.%2").arg(schema, QLatin1String(name)));
    const qint64 value = row.next() ? row.integer(0) : 0;
    row.finish();
    return value;
}

std::optional<qint64> Engine::version(const QString& schema) {
    if (mark(schema, "application_id") != ApplicationId) return std::nullopt;
    return mark(schema, "user_version");
}

void Engine::markAsOurs(const QString& schema, qint64 version) {
    run(QStringLiteral("pragma %1.application_id=%2").arg(schema).arg(ApplicationId));
    run(QStringLiteral("pragma %1.user_version=%2").arg(schema).arg(version));
}

void Engine::begin(const Locks&) {
    isSpoilt_ = false;
    run(QStringLiteral("begin immediate"));
    inTransaction_ = true;
}

void Engine::commit() {
    run(QStringLiteral("commit"));
    inTransaction_ = false;
}

/// The engine may have rolled back by itself, as it does on a full disk.
void Engine::rollback() {
    inTransaction_ = false;
    if (!sqlite3_get_autocommit(connection_)) run(QStringLiteral("rollback"));
}

/// A savepoint keeps the former state of each page that is written behind it: too dear for each change of a record.
void Engine::savepoint(const QString& name, Scope scope) {
    if (scope == Scope::Rule) run(QStringLiteral("savepoint ") + name);
}

void Engine::release(const QString& savepoint, Scope scope) {
    if (scope == Scope::Rule) run(QStringLiteral("release ") + savepoint);
}

void Engine::rollbackTo(const QString& savepoint, Scope scope) {
    isSpoilt_ = scope == Scope::Change;
    if (isSpoilt_) return;
    run(QStringLiteral("rollback to ") + savepoint);
    run(QStringLiteral("release ") + savepoint);
}

/// The engine undoes a whole transaction by itself on a full disk: what comes after must not be written alone, nor what
/// follows half a change.
void Engine::requireGoing() {
    if (inTransaction_ && (isSpoilt_ || sqlite3_get_autocommit(connection_)))
        throw DataError(DataError::Undone, QStringLiteral("La transaction a été annulée, rien n'a été enregistré."));
}

std::unique_ptr<molven::Statement> Engine::prepare(const QString& sql) {
    return std::make_unique<Statement>(connection_, sql);
}

Written Engine::written(molven::Statement& statement, const QStringList& values) {
    notes_.clear();
    statement.run(values);
    return Written({sqlite3_changes64(connection_), sqlite3_last_insert_rowid(connection_)});
}

void Engine::watch(std::function<bool()> goesOn) {
    constexpr int Steps = 20'000; // a few milliseconds of the engine's work
    goesOn_ = std::move(goesOn);
    if (!connection_) return;
    const auto ask = [](void* self) { return static_cast<Engine*>(self)->goesOn_() ? 0 : 1; };
    sqlite3_progress_handler(connection_, goesOn_ ? Steps : 0, goesOn_ ? +ask : nullptr, this);
}

qint64 Engine::changesElsewhere(const QString& schema) { return mark(schema, "data_version"); }

QStringList Engine::integrityFaults(const QString& schema) {
    QStringList faults;
    molven::Statement& rows = run(QStringLiteral("pragma %1.integrity_check").arg(schema));
    while (rows.next()) faults.append(rows.text(0));
    return faults == QStringList(QStringLiteral("ok")) ? QStringList() : faults;
}

QStringList Engine::columns(const QString& schema, const Table& table) {
    QStringList names;
    molven::Statement& rows = run(QStringLiteral("pragma %1.table_info(%2)").arg(schema, table.name));
    while (rows.next()) names.append(rows.text(1));
    return names;
}

QList<Engine::MadeIndex> Engine::indexes(const QString& schema, const Table& table) {
    QList<MadeIndex> found;
    molven::Statement& rows =
        run(QStringLiteral("select name,sql from %1.sqlite_master where type='index' and tbl_name=?").arg(schema),
            {table.name});
    while (rows.next()) found.append({rows.text(0), rows.text(1)});
    return found;
}

QString Engine::indexDefinition(const QString&, const Table& table, const Index& index, const QString& name,
                                Uniqueness uniqueness) const {
    QStringList names;
    for (const Field* field : index.fields) names.append(field->name);
    return QStringLiteral("CREATE %1INDEX %2 on %3 (%4)")
        .arg(uniqueness == Uniqueness::Unique ? QStringLiteral("UNIQUE ") : QString(), name, table.name,
             names.join(u','));
}

void Engine::createIndex(const QString& schema, const Table& table, const Index& index, const QString& name,
                         Uniqueness uniqueness) {
    run(indexDefinition(schema, table, index, name, uniqueness));
}

void Engine::dropIndex(const QString& schema, const QString& name) {
    run(QStringLiteral("drop index %1.\"%2\"").arg(schema, name));
}

QStringList Engine::foreignObjects(const QString& schema, const QList<const Table*>& tables) {
    QStringList own, found;
    for (const Table* table : tables) own.append(QStringLiteral("table ") + table->name);
    molven::Statement& rows = run(QStringLiteral("select type||' '||name from %1.sqlite_master where type<>'index' "
                                                 "and substr(name,1,7)<>'sqlite_' order by 1")
                                      .arg(schema));
    while (rows.next())
        if (!own.contains(rows.text(0), Qt::CaseInsensitive)) found.append(rows.text(0));
    return found;
}

QList<std::pair<const Field*, qint64>> Engine::misfits(const QString& schema, const Table& table) {
    QStringList counts;
    for (const Field* field : table.fields())
        counts.append((field->kind == Field::Kind::Number
                           ? QStringLiteral("sum(typeof(%1) not in ('integer','real','null'))")
                           : QStringLiteral("sum(typeof(%1)<>'text')"))
                          .arg(field->name));
    QList<std::pair<const Field*, qint64>> found;
    molven::Statement& row = run(QStringLiteral("select %1 from %2.%3").arg(counts.join(u','), schema, table.name));
    row.next();
    for (const Field* field : table.fields())
        if (const qint64 count = row.integer(field->position)) found.append({field, count});
    row.finish();
    return found;
}

void Engine::load(const QString& qualifiedTable, const QString& columns, const QList<QStringList>& rows) {
    const QStringList marks(columns.count(u',') + 2, QStringLiteral("?"));
    const QString sql =
        QStringLiteral("insert into %1 (rowid,%2) values (%3)").arg(qualifiedTable, columns, marks.join(u','));
    for (const QStringList& row : rows) write(sql, row);
}

void Engine::loaded(const QString&) {}

} // namespace molven::sqlite

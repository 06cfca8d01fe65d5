#include "data/postgres/engine.h"

#include "data/errors.h"
#include "data/postgres/dialect.h"
#include "data/postgres/pool.h"
#include "data/postgres/site.h"
#include "data/postgres/statement.h"
#include "data/server_address.h"

#include <QSet>

namespace molven::postgres {

namespace {

/// One row a schema: the version of its layout.
QString layoutOf(const QString& schema) { return schema + QStringLiteral(".molven_layout"); }

/// A value as the server reads it in a copied line.
QString escaped(QString value) {
    return value.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\t', QStringLiteral("\\t"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\r', QStringLiteral("\\r"));
}

const QString Count = QStringLiteral("update molven_changes set number=number+1");

} // namespace

Engine::Lease::Lease(Engine& engine) : engine_(engine), isOwn_(!engine.held_) {
    if (isOwn_) engine_.held_ = Pool::take(engine_.address_);
    engine_.held_->watch(engine_.goesOn_);
}

Engine::Lease::~Lease() {
    engine_.held_->watch(nullptr);
    if (isOwn_) Pool::give(std::move(engine_.held_));
}

Engine::Engine(const QString& address, Opening opening) : address_(address) {
    const Lease connection(*this); // an address that leads nowhere is told at once
    if (opening == Opening::New) prepareSite(*held_);
}

Engine::~Engine() {
    prepared_.clear();
    if (held_) Pool::give(std::move(held_));
}

bool Engine::exists(const QString& path) {
    return Engine(server_address::connection(path), Opening::Existing).isOurs(server_address::schema(path));
}

void Engine::discard(const QString& path) {
    Connection(server_address::connection(path))
        .run(QStringLiteral("drop schema if exists %1 cascade").arg(server_address::schema(path)));
}

const Dialect& Engine::dialect() const { return postgres::dialect(); }

QString Engine::attach(const QString& path) { return server_address::schema(path); }

void Engine::detach(const QString&) {}

bool Engine::isOurs(const QString& schema) {
    molven::Statement& row = run(QStringLiteral("select to_regclass(?)::text"), {layoutOf(schema)});
    return row.next() && !row.text(0).isEmpty();
}

qint64 Engine::version(const QString& schema) {
    molven::Statement& row = run(QStringLiteral("select version from ") + layoutOf(schema));
    return row.next() ? row.integer(0) : 0;
}

void Engine::markAsOurs(const QString& schema, qint64 version) {
    run(QStringLiteral("create schema if not exists ") + schema);
    run(QStringLiteral("create table if not exists %1 (version bigint not null)").arg(layoutOf(schema)));
    run(QStringLiteral("delete from ") + layoutOf(schema));
    run(QStringLiteral("insert into %1 values (?)").arg(layoutOf(schema)), {QString::number(version)});
}

void Engine::begin() {
    held_ = Pool::take(address_);
    try {
        held_->run(QStringLiteral("begin; select pg_advisory_xact_lock(%1)").arg(SiteLock));
    } catch (const DataError&) {
        held_.reset();
        throw;
    }
    inTransaction_ = true;
    wrote_ = false;
}

void Engine::commit() {
    requireGoing();
    held_->run(wrote_ ? Count + QStringLiteral("; commit") : QStringLiteral("commit"));
    inTransaction_ = false;
    if (wrote_) ++counted_;
    Pool::give(std::move(held_));
}

void Engine::rollback() {
    inTransaction_ = false;
    std::unique_ptr<Connection> connection = std::move(held_);
    if (!connection || connection->isLost()) return;
    connection->run(QStringLiteral("rollback"));
    Pool::give(std::move(connection));
}

void Engine::rollbackTo(const QString& savepoint) {
    held_->run(QStringLiteral("rollback to %1; release %1").arg(savepoint));
}

Result Engine::run(const QString& sql, const QStringList& values, bool often, bool writes) {
    const Lease connection(*this);
    Result result = connection->run(sql, values, often);
    if (!writes) return result;
    if (inTransaction_) {
        wrote_ = true;
    } else {
        connection->run(Count);
        ++counted_;
    }
    return result;
}

/// The server refuses what comes after a fault, and another connection knows nothing of the transaction.
void Engine::requireGoing() {
    if (inTransaction_ && (held_->isLost() || held_->isBroken()))
        throw DataError(DataError::Undone, QStringLiteral("La transaction a été annulée, rien n'a été enregistré."));
}

std::unique_ptr<molven::Statement> Engine::prepare(const QString& sql) {
    return std::make_unique<Statement>(*this, sql);
}

/// The connection is held meanwhile.
void Engine::lookIn(const QString& schema) {
    if (!held_) held_ = Pool::take(address_);
    held_->run(QStringLiteral("set search_path=%1,public").arg(schema));
}

/// A transaction that is given up takes the look back by itself.
void Engine::lookNowhere() noexcept {
    try {
        held_->run(QStringLiteral("set search_path=public"));
    } catch (const DataError&) {
        if (!inTransaction_) held_.reset();
    }
    if (held_ && !inTransaction_) Pool::give(std::move(held_));
}

qint64 Engine::changesElsewhere(const QString&) {
    molven::Statement& row = run(QStringLiteral("select number from molven_changes"));
    return (row.next() ? row.integer(0) : 0) - counted_;
}

/// A server checks its pages by itself; what is asked here is that each table and index can be read whole.
QStringList Engine::integrityFaults(const QString& schema) {
    QStringList tables, faults;
    molven::Statement& rows =
        run(QStringLiteral("select tablename from pg_tables where schemaname=? order by 1"), {schema});
    while (rows.next()) tables.append(rows.text(0));
    for (const QString& table : tables) {
        try {
            run(QStringLiteral("select sum(length(t::text)) from %1.%2 as t").arg(schema, table));
        } catch (const DataError& error) {
            faults.append(table + QStringLiteral(" : ") + error.description);
        }
    }
    return faults;
}

QStringList Engine::columns(const QString& schema, const Table& table) {
    QStringList names;
    molven::Statement& rows =
        run(QStringLiteral("select attname from pg_attribute where attrelid=to_regclass(?) and attnum>0 and not "
                           "attisdropped and attname<>'rowid' order by attnum"),
            {schema + u'.' + table.name});
    while (rows.next()) names.append(rows.text(0));
    return names;
}

QList<Engine::MadeIndex> Engine::indexes(const QString& schema, const Table& table) {
    QList<MadeIndex> found;
    molven::Statement& rows = run(
        QStringLiteral("select c.relname,pg_get_indexdef(c.oid) from pg_index i join pg_class c on c.oid=i.indexrelid "
                       "where i.indrelid=to_regclass(?) and not i.indisprimary and i.indisvalid"),
        {schema + u'.' + table.name});
    while (rows.next()) found.append({rows.text(0), rows.text(1)});
    return found;
}

QString Engine::indexDefinition(const QString& schema, const Table& table, const Index& index, const QString& name,
                                Uniqueness uniqueness) const {
    QStringList fields;
    for (const Field* field : index.fields)
        fields.append(field->kind == Field::Kind::Number ? field->name + QStringLiteral(" NULLS FIRST") : field->name);
    return QStringLiteral("CREATE %1INDEX %2 ON %3.%4 USING btree (%5)")
        .arg(uniqueness == Uniqueness::Unique ? QStringLiteral("UNIQUE ") : QString(), name, schema, table.name,
             fields.join(QStringLiteral(", ")));
}

void Engine::createIndex(const QString& schema, const Table& table, const Index& index, const QString& name,
                         Uniqueness uniqueness) {
    run(indexDefinition(schema, table, index, name, uniqueness));
}

void Engine::dropIndex(const QString& schema, const QString& name) {
    run(QStringLiteral("drop index %1.\"%2\"").arg(schema, name));
}

QStringList Engine::foreignObjects(const QString& schema, const QList<const Table*>& tables) {
    QSet<QString> own{layoutOf(schema).section(u'.', 1)};
    for (const Table* table : tables) own.insert(table->name);
    QStringList found;
    molven::Statement& rows = run(
        QStringLiteral("select case c.relkind when 'r' then 'table' when 'v' then 'view' else 'object' end,c.relname "
                       "from pg_class c join pg_namespace n on n.oid=c.relnamespace "
                       "where n.nspname=? and c.relkind in ('r','v','m','f','p') union all "
                       "select 'trigger',t.tgname from pg_trigger t join pg_class c on c.oid=t.tgrelid "
                       "join pg_namespace n on n.oid=c.relnamespace where n.nspname=? and not t.tgisinternal "
                       "order by 1,2"),
        {schema, schema});
    while (rows.next())
        if (!own.contains(rows.text(1))) found.append(rows.text(0) + u' ' + rows.text(1));
    return found;
}

/// The server's columns hold what they are for.
QList<std::pair<const Field*, qint64>> Engine::misfits(const QString&, const Table&) { return {}; }

void Engine::load(const QString& qualifiedTable, const QString& columns, const QList<QStringList>& rows) {
    requireGoing();
    QByteArray lines;
    for (const QStringList& row : rows) {
        QStringList values;
        for (const QString& value : row) values.append(value.isNull() ? QStringLiteral("\\N") : escaped(value));
        lines += values.join(u'\t').toUtf8() + '\n';
    }
    const Lease connection(*this);
    connection->copyIn(QStringLiteral("copy %1 (rowid,%2) from stdin").arg(qualifiedTable, columns), lines);
    wrote_ = true;
}

void Engine::loaded(const QString& qualifiedTable) {
    run(QStringLiteral("select setval(pg_get_serial_sequence('%1','rowid'),coalesce(max(rowid),0)+1,false) from %1")
            .arg(qualifiedTable));
}

} // namespace molven::postgres

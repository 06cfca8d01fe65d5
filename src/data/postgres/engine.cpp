#include "data/postgres/engine.h"

#include "data/errors.h"
#include "data/postgres/dialect.h"
#include "data/postgres/pool.h"
#include "data/postgres/site.h"
#include "data/postgres/statement.h"
#include "data/server_address.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <libpq-fe.h>

#include <algorithm>
#include <utility>

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

/// Told behind a commit, so that whoever sees the count change finds what was changed.
Command counting() { return {QStringLiteral("select nextval('molven_changed')")}; }

constexpr qsizetype MostWaiting = 4'000'000; ///< characters
constexpr int MostRowsKept = 64;
constexpr qsizetype MostLocked = 1200; ///< by one transaction: a server keeps some thousands for everybody
constexpr qsizetype MostAnswersKept = 5000;

/// The numbers that stand for names; two names that share one wait for each other without need.
QSet<int> numbersOf(const Locks& locks) {
    QSet<int> numbers;
    for (const QString& name : locks.names()) {
        const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1);
        numbers.insert(qFromBigEndian<qint32>(hash.constData()));
    }
    return numbers;
}

/// What a statement did, by the server's answer: an insertion gives the key of its record.
Written::Count countOf(const pg_result* result) {
    Written::Count count;
    count.changed = QByteArrayView(PQcmdTuples(const_cast<pg_result*>(result))).toLongLong();
    if (PQntuples(result) == 1) count.key = QByteArrayView(PQgetvalue(result, 0, 0)).toLongLong();
    return count;
}

} // namespace

Engine::Lease::Lease(Engine& engine) : engine_(engine), isOwn_(!engine.held_) {
    if (isOwn_) engine_.held_ = engine_.connection();
    engine_.held_->watch(engine_.goesOn_);
}

Engine::Lease::~Lease() {
    engine_.held_->watch(nullptr);
    if (isOwn_) Pool::give(std::move(engine_.held_));
}

Engine::Engine(const QString& address, Opening opening) : address_(address) {
    const Lease connection(*this); // an address that leads nowhere is told at once
    if (opening == Opening::New) prepareSite(*held_);
    isPrepared_ = isPrepared(*held_);
}

/// A server that was restarted meanwhile may sort otherwise.
std::unique_ptr<Connection> Engine::connection() const {
    std::unique_ptr<Connection> taken = Pool::take(address_);
    if (isPrepared_) isPrepared(*taken);
    return taken;
}

Engine::~Engine() {
    prepared_.clear();
    if (held_) Pool::give(std::move(held_));
}

bool Engine::exists(const QString& path) {
    return Engine(server_address::connection(path), Opening::Existing)
        .version(server_address::schema(path))
        .has_value();
}

void Engine::discard(const QString& path) {
    Connection(server_address::connection(path))
        .run(QStringLiteral("drop schema if exists %1 cascade").arg(server_address::schema(path)));
}

const Dialect& Engine::dialect() const { return postgres::dialect(); }

QString Engine::attach(const QString& path) { return server_address::schema(path); }

void Engine::detach(const QString&) {}

std::optional<qint64> Engine::version(const QString& schema) {
    if (!isPrepared_) return std::nullopt;
    if (!versions_.contains(schema)) versions_ = versions();
    const auto found = versions_.constFind(schema);
    if (found == versions_.constEnd() || *found) return found == versions_.constEnd() ? std::nullopt : *found;
    molven::Statement& row =
        run(QStringLiteral("select molven_version(?)"), {layoutOf(schema)}); // says what forbids it
    return row.next() && !row.text(0).isEmpty() ? std::optional(row.integer(0)) : std::nullopt;
}

/// None for a schema that this account may not look into.
QHash<QString, std::optional<qint64>> Engine::versions() {
    molven::Statement& rows = run(
        QStringLiteral("select n.nspname,case when has_schema_privilege(n.oid,'usage') and "
                       "has_table_privilege(c.oid,'select') then molven_version(n.nspname||'.molven_layout') end "
                       "from pg_class c join pg_namespace n on n.oid=c.relnamespace where c.relname='molven_layout'"));
    QHash<QString, std::optional<qint64>> found;
    while (rows.next())
        found.insert(rows.text(0), rows.text(1).isEmpty() ? std::nullopt : std::optional(rows.integer(1)));
    return found;
}

void Engine::markAsOurs(const QString& schema, qint64 version) {
    run(QStringLiteral("create schema if not exists ") + schema);
    run(QStringLiteral("create table if not exists %1 (version bigint not null)").arg(layoutOf(schema)));
    run(QStringLiteral("delete from ") + layoutOf(schema));
    run(QStringLiteral("insert into %1 values (?)").arg(layoutOf(schema)), {QString::number(version)});
}

void Engine::begin(const Locks& locks) {
    forget();
    foreseen_.clear();
    versions_.clear();
    held_ = connection();
    locked_ = numbersOf(locks);
    isAlone_ = locks.isAll() || locked_.size() > MostLocked;
    hasSite_ = !locks.isNone();
    QStringList statements{QStringLiteral("begin")};
    if (hasSite_)
        statements.append(QStringLiteral("select pg_advisory_xact_lock%1(%2)")
                              .arg(isAlone_ ? QString() : QStringLiteral("_shared"))
                              .arg(SiteLock));
    QList<int> inOrder = isAlone_ ? QList<int>() : locked_.values();
    std::sort(inOrder.begin(), inOrder.end());
    for (const int number : inOrder)
        statements.append(QStringLiteral("select pg_advisory_xact_lock(%1,%2)").arg(SiteLock).arg(number));
    try {
        held_->run(statements.join(u';'));
    } catch (const DataError&) {
        held_.reset();
        throw;
    }
    inTransaction_ = true;
    wrote_ = isSpoilt_ = false;
}

void Engine::lockBesides(const Locks& locks) {
    if (!inTransaction_ || isAlone_) return;
    const DataError disturbed(DataError::Disturbed, QStringLiteral("La base de données est occupée par un autre "
                                                                   "poste, veuillez recommencer."));
    const QSet<int> further = numbersOf(locks) - locked_;
    if (!locks.isAll() && further.isEmpty()) return;
    if (locks.isAll() || !hasSite_ || locked_.size() + further.size() > MostLocked) throw disturbed;
    QStringList tries;
    for (const int number : further)
        tries.append(QStringLiteral("pg_try_advisory_xact_lock(%1,%2)").arg(SiteLock).arg(number));
    molven::Statement& row = run(QStringLiteral("values (%1)").arg(tries.join(QStringLiteral(" and "))));
    if (!row.next() || row.integer(0) == 0) throw disturbed;
    locked_ += further;
    forget(); // what was read before may have been another's
}

void Engine::commit() {
    requireGoing();
    std::vector<Command> last{{QStringLiteral("commit"), {}, false}};
    if (wrote_) last.push_back(counting());
    tell(last);
    inTransaction_ = false;
    if (wrote_) ++counted_;
    forget();
    foreseen_.clear();
    Pool::give(std::move(held_));
}

void Engine::rollback() {
    inTransaction_ = false;
    waiting_.clear();
    waitingSize_ = 0;
    forget();
    foreseen_.clear();
    std::unique_ptr<Connection> connection = std::move(held_);
    if (!connection || connection->isLost()) return;
    connection->run(QStringLiteral("rollback"));
    Pool::give(std::move(connection));
}

void Engine::savepoint(const QString& name, Scope scope) {
    requireGoing();
    if (scope == Scope::Change) return;
    wait(std::make_shared<Waiting>(Waiting{{QStringLiteral("savepoint ") + name, {}, false}}));
}

/// A fault of what was written since must be told before the rule is over.
void Engine::release(const QString& savepoint, Scope scope) {
    requireGoing();
    if (scope == Scope::Change) return;
    const Command released{QStringLiteral("release ") + savepoint, {}, false};
    if (waiting_.empty())
        wait(std::make_shared<Waiting>(Waiting{released}));
    else
        tell({released});
}

void Engine::rollbackTo(const QString& savepoint, Scope scope) {
    forget();
    if (scope == Scope::Change) {
        isSpoilt_ = true;
        return;
    }
    const QString untold = QStringLiteral("savepoint ") + savepoint;
    const auto since =
        std::find_if(waiting_.rbegin(), waiting_.rend(), [&](const auto& one) { return one->command.sql == untold; });
    isSpoilt_ = false;
    if (since != waiting_.rend()) {
        waiting_.erase(std::prev(since.base()), waiting_.end());
        return;
    }
    waiting_.clear();
    held_->run(QStringLiteral("rollback to %1; release %1").arg(savepoint));
}

std::vector<Result> Engine::tell(const std::vector<Command>& further) {
    versions_.clear();
    const Lease connection(*this);
    std::vector<std::shared_ptr<Waiting>> told;
    told.swap(waiting_);
    waitingSize_ = 0;
    std::vector<Command> all;
    for (const auto& one : told) all.push_back(one->command);
    all.insert(all.end(), further.begin(), further.end());
    if (all.empty()) return {};
    std::vector<Result> answers = connection->run(all);
    for (std::size_t i = 0; i < told.size(); ++i) told[i]->count = countOf(answers[i].get());
    answers.erase(answers.begin(), answers.begin() + static_cast<std::ptrdiff_t>(told.size()));
    return answers;
}

void Engine::wait(const std::shared_ptr<Waiting>& command) {
    waiting_.push_back(command);
    for (const QString& value : command->command.values) waitingSize_ += value.size();
    if (waitingSize_ > MostWaiting) tell({});
}

Written::Count Engine::outcome(Waiting& waiting) {
    if (!waiting.count) tell({});
    if (!waiting.count)
        throw DataError(DataError::Undone, QStringLiteral("La transaction a été annulée, rien n'a été enregistré."));
    return *waiting.count;
}

Written Engine::written(molven::Statement& statement, const QStringList& values) {
    const auto& written = static_cast<const Statement&>(statement);
    writtenAt_[written.tables().value(0)] = ++moment_;
    const auto waiting = std::make_shared<Waiting>(Waiting{written.with(values)});
    if (inTransaction_) {
        wrote_ = true;
        wait(waiting);
        return Written([this, waiting] { return outcome(*waiting); });
    }
    waiting->count = countOf(tell({waiting->command, counting()}).front().get());
    ++counted_;
    return Written(*waiting->count);
}

Answer Engine::ask(const Statement& statement, const QStringList& values) {
    const Command command = statement.with(values);
    const QString asked = question(statement, command);
    if (Answer known = kept(statement, asked)) return known;
    foreseen_.remove(asked);
    const auto along = statement.isRead() ? std::exchange(foreseen_, {}) : QHash<QString, Foreseen>();
    std::vector<Command> commands{command};
    for (const Foreseen& one : along) commands.push_back(one.command);
    std::vector<Result> answers = tell(commands);
    const Answer answer(std::move(answers.front()));
    if (!statement.isRead()) forget();
    keep(statement, asked, answer);
    auto further = answers.begin();
    for (auto one = along.begin(); one != along.end(); ++one)
        keep(*one->statement, one.key(), Answer(std::move(*++further)));
    return answer;
}

void Engine::foresee(const QString& sql, const QList<QStringList>& values) {
    if (!keeps()) return;
    const auto& statement = static_cast<const Statement&>(prepared(sql));
    for (const QStringList& one : values) {
        const Command command = statement.with(one);
        const QString asked = question(statement, command);
        if (!kept(statement, asked)) foreseen_.insert(asked, {&statement, command});
    }
}

void Engine::endReading() noexcept {
    if (--readings_ > 0 || inTransaction_) return;
    forget();
    foreseen_.clear();
}

QString Engine::question(const Statement& statement, const Command& command) {
    QString text = QString::number(reinterpret_cast<quintptr>(&statement), 36);
    for (const QString& value : command.values) text += QChar(value.isNull() ? 0x1E : 0x1F) + value;
    return text;
}

Answer Engine::kept(const Statement& statement, const QString& asked) const {
    if (!keeps() || !statement.isRead() || statement.tables().isEmpty()) return {};
    const auto found = kept_.constFind(asked);
    if (found == kept_.constEnd()) return {};
    for (const QString& table : statement.tables())
        if (writtenAt_.value(table) > found->moment) return {};
    return found->answer;
}

void Engine::keep(const Statement& statement, const QString& asked, const Answer& answer) {
    if (!keeps() || !statement.isRead() || statement.tables().isEmpty()) return;
    if (PQntuples(answer.get()) > MostRowsKept) return;
    if (kept_.size() >= MostAnswersKept) kept_.clear();
    kept_.insert(asked, {answer, ++moment_});
}

void Engine::forget() {
    kept_.clear();
    writtenAt_.clear();
}

/// The server refuses what comes after a fault, and another connection knows nothing of the transaction.
void Engine::requireGoing() {
    if (inTransaction_ && (isSpoilt_ || held_->isLost() || held_->isBroken()))
        throw DataError(DataError::Undone, QStringLiteral("La transaction a été annulée, rien n'a été enregistré."));
}

std::unique_ptr<molven::Statement> Engine::prepare(const QString& sql) {
    return std::make_unique<Statement>(*this, sql);
}

/// The connection is held meanwhile.
void Engine::lookIn(const QString& schema) {
    tell({});
    if (!held_) held_ = connection();
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
    molven::Statement& row = run(QStringLiteral("select last_value from molven_changed"));
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
    tell({});
    forget();
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

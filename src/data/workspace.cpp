#include "data/workspace.h"

#include "data/database.h"
#include "data/layout.h"
#include "data/sqlite_engine.h"

#include <QFileInfo>

#include <sqlite3.h>

namespace molven {

Workspace::~Workspace() {
    prepared_.clear();
    sqlite3_close(connection_);
}

Database Workspace::open(const QString& path) {
    sqlite::requireFile(path);
    const QString key = QFileInfo(path).canonicalFilePath();
    if (!schemas_.contains(key)) schemas_.insert(key, attach(key));
    return Database(*this, schemas_.value(key), path);
}

QString Workspace::attach(const QString& path) {
    const bool first = schemas_.isEmpty();
    const QString schema = first ? QStringLiteral("main") : QStringLiteral("f%1").arg(schemas_.size());
    if (first) {
        if (!connection_) connection_ = sqlite::connect(path, sqlite::Opening::Existing);
    } else {
        run(QStringLiteral("attach database ? as ") + schema, {path});
    }
    run(QStringLiteral("pragma %1.synchronous=full").arg(schema));
    // A page that leaves the memory before the commit costs a flush of the journal to the disk: a push of prices with
    // its entries stays within 64 MB.
    run(QStringLiteral("pragma %1.cache_spill=16384").arg(schema));
    try {
        requireOurs(schema, path);
    } catch (const DataError&) {
        if (!first) run(QStringLiteral("detach database ") + schema);
        throw;
    }
    return schema;
}

qint64 Workspace::mark(const QString& schema, const char* name) {
    Statement& row = run(QStringLiteral("pragma %1.%2").arg(schema, QLatin1String(name)));
    const qint64 value = row.next() ? row.integer(0) : 0;
    row.finish();
    return value;
}

void Workspace::requireOurs(const QString& schema, const QString& path) {
    if (mark(schema, "application_id") != sqlite::ApplicationId)
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' n'est pas une base de données MOLVEN.").arg(path));
    const qint64 version = mark(schema, "user_version");
    if (version > sqlite::SchemaVersion)
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' vient d'une version plus récente du programme.").arg(path));
    if (version < sqlite::SchemaVersion) Layout::upgrade(path);
}

Statement& Workspace::run(const QString& sql, const QStringList& values) {
    // The engine undoes a whole transaction by itself on a full disk: what comes after must not be written alone.
    if (depth_ > 0 && sqlite3_get_autocommit(connection_))
        throw DataError(DataError::Undone, QStringLiteral("La transaction a été annulée, rien n'a été enregistré."));
    std::unique_ptr<Statement>& statement = prepared_[sql];
    if (!statement) {
        try {
            statement = std::make_unique<Statement>(connection_, sql);
        } catch (const DataError&) {
            prepared_.erase(sql);
            throw;
        }
    }
    statement->run(values);
    return *statement;
}

Watch::Watch(Workspace& workspace, std::function<bool()> goesOn) : workspace_(workspace), goesOn_(std::move(goesOn)) {
    constexpr int Steps = 20'000; // a few milliseconds of the engine's work
    sqlite3_progress_handler(
        workspace_.connection_, Steps, [](void* self) { return static_cast<Watch*>(self)->goesOn_() ? 0 : 1; }, this);
}

Watch::~Watch() { sqlite3_progress_handler(workspace_.connection_, 0, nullptr, nullptr); }

Transaction::Transaction(Workspace& workspace, const QString& deed)
    : workspace_(workspace), depth_(workspace.depth_), outerDeed_(workspace.deed_) {
    workspace_.run(depth_ == 0 ? QStringLiteral("begin immediate") : QStringLiteral("savepoint ") + savepoint());
    ++workspace_.depth_;
    if (outerDeed_.isEmpty()) workspace_.deed_ = deed;
}

Transaction::~Transaction() {
    if (!open_) return;
    close();
    try {
        if (depth_ == 0) {
            workspace_.run(QStringLiteral("rollback"));
        } else {
            workspace_.run(QStringLiteral("rollback to ") + savepoint());
            workspace_.run(QStringLiteral("release ") + savepoint());
        }
    } catch (const DataError&) {
        // The engine has already rolled back by itself, as it does on a full disk.
    }
}

void Transaction::commit() {
    workspace_.run(depth_ == 0 ? QStringLiteral("commit") : QStringLiteral("release ") + savepoint());
    open_ = false;
    close();
}

void Transaction::close() {
    workspace_.depth_ = depth_;
    workspace_.deed_ = outerDeed_;
    if (depth_ > 0) return;
    workspace_.moment_.clear();
    workspace_.journals_.clear();
}

} // namespace molven

#include "data/workspace.h"

#include "data/database.h"
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
    try {
        requireOurs(schema, path);
    } catch (const DataError&) {
        if (!first) run(QStringLiteral("detach database ") + schema);
        throw;
    }
    return schema;
}

void Workspace::requireOurs(const QString& schema, const QString& path) {
    const auto mark = [&](const char* name) {
        Statement& row = run(QStringLiteral("pragma %1.%2").arg(schema, QLatin1String(name)));
        const qint64 value = row.next() ? row.integer(0) : 0;
        row.finish();
        return value;
    };
    if (mark("application_id") != sqlite::ApplicationId)
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' n'est pas une base de données MOLVEN.").arg(path));
    if (mark("user_version") > sqlite::SchemaVersion)
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' vient d'une version plus récente du programme.").arg(path));
}

Statement& Workspace::run(const QString& sql, const QStringList& values) {
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

Transaction::Transaction(Workspace& workspace) : workspace_(workspace), outermost_(!workspace.inTransaction_) {
    if (!outermost_) return;
    workspace_.run(QStringLiteral("begin immediate"));
    workspace_.inTransaction_ = true;
}

Transaction::~Transaction() {
    if (!outermost_ || !open_) return;
    workspace_.inTransaction_ = false;
    try {
        workspace_.run(QStringLiteral("rollback"));
    } catch (const DataError&) {
        // The engine has already rolled back by itself, as it does on a full disk.
    }
}

void Transaction::commit() {
    if (outermost_) {
        workspace_.run(QStringLiteral("commit"));
        workspace_.inTransaction_ = false;
    }
    open_ = false;
}

} // namespace molven

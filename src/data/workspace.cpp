#include "data/workspace.h"

#include "data/database.h"
#include "data/sqlite_engine.h"

#include <QFileInfo>
#include <QSqlError>
#include <QVariant>

#include <atomic>

namespace molven {

namespace {
std::atomic<unsigned> connectionCount;
}

Workspace::Workspace() : connectionName_(QStringLiteral("workspace%1").arg(++connectionCount)) {}

Workspace::~Workspace() {
    qDeleteAll(prepared_);
    connection_.close();
    connection_ = {};
    if (QSqlDatabase::contains(connectionName_)) QSqlDatabase::removeDatabase(connectionName_);
}

Database Workspace::open(const QString& path) {
    sqlite::requireFile(path);
    const QString key = QFileInfo(path).canonicalFilePath();
    if (!schemas_.contains(key)) schemas_.insert(key, attach(key));
    return Database(*this, schemas_.value(key), path);
}

void Workspace::connectTo(const QString& path) {
    connection_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName_);
    connection_.setDatabaseName(path);
    connection_.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(sqlite::BusyTimeoutMs));
    if (!connection_.open()) throw sqlite::translated(connection_.lastError());
    sqlite::prepare(connection_);
}

QString Workspace::attach(const QString& path) {
    const bool first = schemas_.isEmpty();
    const QString schema = first ? QStringLiteral("main") : QStringLiteral("f%1").arg(schemas_.size());
    if (first) {
        connectTo(path);
    } else {
        run(QStringLiteral("attach database ? as %1").arg(schema), {path});
    }
    run(QStringLiteral("pragma %1.synchronous=full").arg(schema));
    QSqlQuery& mark = run(QStringLiteral("pragma %1.application_id").arg(schema));
    const int applicationId = mark.next() ? mark.value(0).toInt() : 0;
    mark.finish();
    if (applicationId != sqlite::ApplicationId) {
        if (!first) run(QStringLiteral("detach database %1").arg(schema));
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' n'est pas une base de données MOLVEN.").arg(path));
    }
    QSqlQuery& version = run(QStringLiteral("pragma %1.user_version").arg(schema));
    const int found = version.next() ? version.value(0).toInt() : 0;
    version.finish();
    if (found > sqlite::SchemaVersion) {
        throw DataError(DataError::NotADatabase,
                        QStringLiteral("Le fichier '%1' vient d'une version plus récente du programme.").arg(path));
    }
    return schema;
}

QSqlQuery& Workspace::run(const QString& sql, const QStringList& values) {
    QSqlQuery*& query = prepared_[sql];
    if (!query) {
        query = new QSqlQuery(connection_);
        query->setForwardOnly(true);
        if (!query->prepare(sql)) {
            const DataError error = sqlite::translated(query->lastError());
            delete prepared_.take(sql);
            throw error;
        }
    }
    for (int i = 0; i < values.size(); ++i) query->bindValue(i, values[i]);
    if (!query->exec()) {
        const DataError error = sqlite::translated(query->lastError());
        query->finish();
        throw error;
    }
    return *query;
}

Transaction::Transaction(Workspace& workspace) : workspace_(workspace), outermost_(!workspace.inTransaction_) {
    if (!outermost_) return;
    workspace_.run(QStringLiteral("begin immediate")).finish();
    workspace_.inTransaction_ = true;
}

Transaction::~Transaction() {
    if (!outermost_ || !open_) return;
    workspace_.inTransaction_ = false;
    try {
        workspace_.run(QStringLiteral("rollback")).finish();
    } catch (const DataError&) {
        // The engine has already rolled back by itself, as it does on a full disk.
    }
}

void Transaction::commit() {
    if (outermost_) {
        workspace_.run(QStringLiteral("commit")).finish();
        workspace_.inTransaction_ = false;
    }
    open_ = false;
}

} // namespace molven

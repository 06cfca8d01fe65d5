#include "data/engine.h"

#include "data/errors.h"
#include "data/postgres/engine.h"
#include "data/server_address.h"
#include "data/sqlite/connection.h"
#include "data/sqlite/engine.h"

#include <QFile>
#include <QFileInfo>

namespace molven {

std::unique_ptr<Engine> Engine::at(const QString& path, Opening opening) {
    if (server_address::isOne(path))
        return std::make_unique<postgres::Engine>(server_address::connection(path), opening);
    return std::make_unique<sqlite::Engine>(opening);
}

QString Engine::server(const QString& path) {
    return server_address::isOne(path) ? server_address::connection(path) : QString();
}

QString Engine::canonical(const QString& path) {
    return server_address::isOne(path) ? path : QFileInfo(path).canonicalFilePath();
}

bool Engine::exists(const QString& path) {
    return server_address::isOne(path) ? postgres::Engine::exists(path) : QFileInfo::exists(path);
}

void Engine::discard(const QString& path) {
    if (server_address::isOne(path))
        postgres::Engine::discard(path);
    else
        QFile::remove(path);
}

void Engine::require(const QString& path) {
    if (!server_address::isOne(path)) sqlite::requireFile(path);
}

Statement& Engine::prepared(const QString& sql) {
    requireGoing();
    std::unique_ptr<Statement>& statement = prepared_[sql];
    if (!statement) {
        try {
            statement = prepare(sql);
        } catch (const DataError&) {
            prepared_.erase(sql);
            throw;
        }
    }
    return *statement;
}

Statement& Engine::run(const QString& sql, const QStringList& values) {
    Statement& statement = prepared(sql);
    statement.run(values);
    return statement;
}

Written Engine::write(const QString& sql, const QStringList& values) { return written(prepared(sql), values); }

} // namespace molven

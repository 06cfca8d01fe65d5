#include "data/engine_version.h"

#include "data/engine.h"
#include "data/errors.h"
#include "data/layout.h"

#include <sqlite3.h>

namespace molven {

namespace {

/// "15.14"; without the packager's words, and with those of the fault for one that does not answer.
QString serverVersion(const QString& path) {
    try {
        const std::unique_ptr<Engine> server = Engine::at(path);
        Statement& row = server->run(QStringLiteral("show server_version"));
        return row.next() ? row.text(0).section(u' ', 0, 0) : QString();
    } catch (const DataError&) {
        return QStringLiteral("qui ne répond pas");
    }
}

} // namespace

QString engineVersion(const QString& path) {
    const QString engine = Engine::server(path).isEmpty()
                               ? QStringLiteral("SQLite ") + QString::fromLatin1(sqlite3_libversion())
                               : QStringLiteral("PostgreSQL ") + serverVersion(path);
    return QStringLiteral("%1, fichiers de forme %2").arg(engine).arg(Layout::Version);
}

} // namespace molven

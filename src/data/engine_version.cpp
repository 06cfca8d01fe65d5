#include "data/engine_version.h"

#include "data/layout.h"

#include <sqlite3.h>

namespace molven {

QString engineVersion() {
    return QStringLiteral("SQLite %1, fichiers de forme %2")
        .arg(QString::fromLatin1(sqlite3_libversion()))
        .arg(Layout::Version);
}

} // namespace molven

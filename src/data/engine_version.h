#pragma once

#include <QString>

namespace molven {

/// The data engine of the file of that path and the form of the files that it keeps, in words: "SQLite 3.40.1, fichiers
/// de forme 5", "PostgreSQL 15.14, fichiers de forme 5". That of folders without path.
QString engineVersion(const QString& path = {});

} // namespace molven

#pragma once

#include <QString>

namespace molven {

/// The data engine and the form of the files it keeps, in words: "SQLite 3.40.1, fichiers de forme 5".
QString engineVersion();

} // namespace molven

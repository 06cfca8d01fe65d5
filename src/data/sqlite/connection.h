#pragma once

#include "data/engine.h"
#include "data/errors.h"

struct sqlite3;

namespace molven::sqlite {

/// Marks a file as ours: "MOLV".
constexpr int ApplicationId = 0x4D4F4C56;
constexpr int BusyTimeoutMs = 10'000;

using Opening = molven::Engine::Opening;

/// A connection to one file, with what every MOLVEN file needs: the French sort order and the search without accents.
sqlite3* connect(const QString& path, Opening opening);
/// The connection's last fault as the program tells it: French description, the engine's own words as its record.
DataError fault(sqlite3* connection);
/// Throws DataError unless a file of ours lies there.
void requireFile(const QString& path);

} // namespace molven::sqlite

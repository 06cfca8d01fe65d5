#pragma once

#include "data/errors.h"

#include <QSqlDatabase>
#include <QSqlError>

namespace molven::sqlite {

/// Marks a file as ours: "MOLV".
constexpr int ApplicationId = 0x4D4F4C56;
/// Raised when the layout of the tables changes.
constexpr int SchemaVersion = 1;
constexpr int BusyTimeoutMs = 10'000;

/// Gives the connection what every MOLVEN file needs: the French sort order and the search without accents.
void prepare(QSqlDatabase& connection);
/// The engine's fault as the program tells it: French description, the engine's own words as its record.
DataError translated(const QSqlError& error);
DataError translated(int number, const QString& engineText);
/// Throws DataError unless a file of ours lies there.
void requireFile(const QString& path);

} // namespace molven::sqlite

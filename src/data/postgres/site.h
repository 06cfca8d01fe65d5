#pragma once

#include <QString>
#include <QStringList>

namespace molven::postgres {

class Connection;

/// Gives a database what the program's tables and statements need there: the type of codes, the French order, the
/// functions of its statements, the counter of changes. What is there already stays. Throws Refusal for a database that
/// does not keep UTF-8 or does not sort by bytes.
void prepareSite(Connection& connection);

/// Whether prepareSite() has worked there. Throws DataError when the server sorts labels by other rules than when their
/// indexes were made, since a record would not be found by them; prepareSite() makes them again.
bool isPrepared(Connection& connection);

} // namespace molven::postgres

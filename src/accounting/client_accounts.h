#pragma once

#include "data/database.h"

namespace molven::client_accounts {

/// Adds to the chart the account of every client that has a number of its own and is not in it yet, under the client's
/// name. Number of accounts added.
qint64 open(Database molven, Database compta);

} // namespace molven::client_accounts

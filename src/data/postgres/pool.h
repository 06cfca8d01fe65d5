#pragma once

#include "data/postgres/connection.h"

namespace molven::postgres {

/// The connections of this thread that nobody uses at the moment: windows need one while they read or write, not while
/// they stand open. A few are kept.
class Pool {
public:
    static std::unique_ptr<Connection> take(const QString& address);
    /// A connection that is lost, or left in a transaction, is ended.
    static void give(std::unique_ptr<Connection> connection);
};

} // namespace molven::postgres

#include "data/postgres/pool.h"

#include <unistd.h>

#include <algorithm>
#include <list>

namespace molven::postgres {

namespace {

constexpr std::size_t MostKept = 3;

struct Idle {
    std::list<std::unique_ptr<Connection>> connections; ///< the one used last first
    pid_t process = getpid();
};

/// A process that was split off must not touch the connections of the one it came from, not even to end them.
std::list<std::unique_ptr<Connection>>& idle() {
    static thread_local Idle kept;
    if (kept.process != getpid()) {
        for (auto& connection : kept.connections) connection.release();
        kept.connections.clear();
        kept.process = getpid();
    }
    return kept.connections;
}

} // namespace

std::unique_ptr<Connection> Pool::take(const QString& address) {
    auto& connections = idle();
    for (auto one = connections.begin(); one != connections.end();) {
        if ((*one)->address() != address) {
            ++one;
            continue;
        }
        std::unique_ptr<Connection> found = std::move(*one);
        one = connections.erase(one);
        if (found->isAlive()) return found;
    }
    return std::make_unique<Connection>(address);
}

void Pool::give(std::unique_ptr<Connection> connection) {
    if (connection->isLost() || connection->isInTransaction()) return;
    auto& connections = idle();
    connections.push_front(std::move(connection));
    if (connections.size() > MostKept) connections.pop_back();
}

} // namespace molven::postgres

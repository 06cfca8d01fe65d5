#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

struct pg_conn;

namespace molven::bench {

/// A server's own C interface, without the program's data layer: what its speed on a server is measured against.
class BareServer {
public:
    explicit BareServer(const QString& address);
    ~BareServer();
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

    /// Sends a statement, prepared once, with its values for $1, $2 ...; it is run behind those sent before.
    void send(const QByteArray& sql, const std::vector<QByteArray>& values = {});
    /// Waits for the answers to all of them and reads them; answers the number of rows.
    int wait();

private:
    pg_conn* connection_;
    QHash<QByteArray, QByteArray> names_;
};

} // namespace molven::bench

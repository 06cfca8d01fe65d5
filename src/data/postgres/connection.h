#pragma once

#include "data/errors.h"

#include <functional>
#include <memory>

struct pg_conn;
struct pg_result;

namespace molven::postgres {

struct ClearResult {
    void operator()(pg_result* result) const;
};
using Result = std::unique_ptr<pg_result, ClearResult>;

/// The lock that whoever writes to a database takes first, so that two workstations never wait for each other.
constexpr int SiteLock = 0x4D4F4C56;

/// One connection to a server. Every function throws DataError on a fault, with the engines' common numbers.
class Connection {
public:
    /// Connects to an address, or to another database of its server; waits 10 s at most.
    explicit Connection(const QString& address, const QString& database = {});
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// What an address says of an option ("dbname"); empty when it says nothing. Throws Refusal for what is no address.
    static QString option(const QString& address, const char* name);

    /// Runs statements without values, separated by semicolons; answers the last one's result.
    Result run(const QString& sql);
    /// Prepares a statement whose marks are $1, $2 ... under a name.
    void prepare(const QByteArray& name, const QString& sql);
    /// Runs what is prepared under the name, or the statement itself without one; a null text is the server's null.
    Result run(const QString& sql, const QByteArray& name, const QStringList& values);

    /// Adds what a text in the server's own form holds to a table: "copy ... from stdin" and its lines.
    void copyIn(const QString& sql, const QByteArray& lines);

    /// A number that grows whenever the connection was made anew: what was prepared before is gone.
    int generation() const { return generation_; }
    bool isLost() const;
    /// A statement failed in the transaction that is open: the server refuses everything but giving up.
    bool isBroken() const;
    /// Connects again after a loss.
    void reconnect();
    /// While a statement works, asks every few milliseconds whether to go on; no function ends it.
    void watch(std::function<bool()> goesOn) { goesOn_ = std::move(goesOn); }

private:
    void begin();
    /// The result of what was sent; asks meanwhile.
    Result received();
    Result checked(pg_result* raw);
    [[noreturn]] void fail(const pg_result* result);

    pg_conn* connection_ = nullptr;
    int generation_ = 0;
    std::function<bool()> goesOn_;
};

} // namespace molven::postgres

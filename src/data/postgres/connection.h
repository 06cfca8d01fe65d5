#pragma once

#include "data/errors.h"

#include <QHash>

#include <functional>
#include <memory>
#include <vector>

struct pg_conn;
struct pg_result;

namespace molven::postgres {

struct ClearResult {
    void operator()(pg_result* result) const;
};
using Result = std::unique_ptr<pg_result, ClearResult>;

/// A result that several statements may look at.
using Answer = std::shared_ptr<const pg_result>;

/// One statement whose marks are $1, $2 ..., a null text being the server's null; `isOften` one is prepared, once a
/// connection.
struct Command {
    QString sql;
    QStringList values = {};
    bool isOften = true;
};

/// The lock that whoever writes to a database takes first: alone, or together with others, who then lock by name, under
/// two numbers of which this is the first.
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
    /// Sends all of them at once and waits for the answers once; those behind a faulty one are not run.
    std::vector<Result> run(const std::vector<Command>& commands);

    /// Adds what a text in the server's own form holds to a table: "copy ... from stdin" and its lines.
    void copyIn(const QString& sql, const QByteArray& lines);

    /// How often this process has waited for an answer of a server.
    static qint64 roundTrips();

    const QString& address() const { return address_; }
    bool isLost() const;
    /// Looks whether the server is still there, without asking it anything.
    bool isAlive();
    bool isInTransaction() const;
    /// A statement failed in the transaction that is open: the server refuses everything but giving up.
    bool isBroken() const;
    /// Kept for prepareSite(): whether what the program needs was found there.
    bool hasSite = false;

    /// While a statement works, asks every few milliseconds whether to go on; no function ends it.
    void watch(std::function<bool()> goesOn) { goesOn_ = std::move(goesOn); }

private:
    /// Tries to, with the password that is known.
    void connect(const QString& database);
    /// Sends a statement on its way, and before it, once, what prepares it.
    bool send(const Command& command);
    /// Waits until an answer is there; asks meanwhile, and stops the statement once when it shall not go on.
    void await();
    /// The answers to what was sent, each kind in its order; the first fault is thrown when all are there.
    std::vector<Result> received();
    Result checked(pg_result* raw);
    [[noreturn]] void fail(const pg_result* result);

    const QString address_;
    pg_conn* connection_ = nullptr;
    QHash<QString, QByteArray> prepared_; ///< statement -> name
    int names_ = 0;                       ///< given to statements so far
    bool isStopped_ = false;
    std::function<bool()> goesOn_;
};

} // namespace molven::postgres

#pragma once

#include "data/engine.h"
#include "data/errors.h"
#include "data/locks.h"

#include <QHash>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace molven {

class Database;

/// One connection and one transaction over the database files opened in it: a commit covers all of them or
/// none. Files that are written together are opened in the order molven, vente, then the others, so that two
/// workstations never wait for each other.
class Workspace {
public:
    Workspace() = default;
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Opens a database file by full path; opening it again gives the same. No further file can be opened once a
    /// transaction has begun. A file of an earlier version is brought up to date first. Throws DataError for a file
    /// that is missing, damaged, foreign or of a later version.
    Database open(const QString& path);
    /// Whether a database file lies there.
    bool has(const QString& path);

    bool inTransaction() const { return depth_ > 0; }

private:
    friend class Transaction;
    friend class Watch;
    friend class Reading;
    friend class Journal;
    friend class Layout;

    /// A file opened here.
    struct Opened {
        Engine* engine;
        QString schema; ///< what stands before its tables' names
    };

    Opened openOurs(const QString& path);
    /// Gives up a file that cannot be opened, and its connection when it serves no other.
    void close(const Opened& opened);
    /// Those that there are; the server's, which holds what must not be lost, first.
    QList<Engine*> engines() const;
    /// The connection that serves a path; made when there is none.
    Engine& engineFor(const QString& path, Engine::Opening opening);
    /// Opens a file as it is; `opening` counts for the first one.
    Database openAsIs(const QString& path, Engine::Opening opening);
    /// Refuses a file that is not ours or that a later version wrote, brings an older one up to date.
    static void requireOurs(const Opened& opened, const QString& path);

    std::unique_ptr<Engine> server_; ///< the connection to the dossier's server, if it lies on one
    QString address_;                ///< of that server
    std::unique_ptr<Engine> local_;  ///< the connection to files of folders
    QHash<QString, Opened> files_;   ///< by canonical path
    int readings_ = 0;
    int depth_ = 0;                                ///< transactions begun one inside another
    QString deed_;                                 ///< what they do, for the journal
    QString moment_;                               ///< when the outermost first wrote to a journal; empty before
    QHash<QString, bool> journals_;                ///< file -> whether it keeps a journal, as known in this transaction
    QHash<const Engine*, QStringList> journalled_; ///< files that were found to keep one, which they do for ever
};

/// While it lives, long statements of a workspace ask every few milliseconds whether to go on. Stopped, a statement
/// throws Refusal; the transaction it wrote in is undone.
class Watch {
public:
    Watch(Workspace& workspace, std::function<bool()> goesOn);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    Workspace& workspace_;
};

/// While it lives, a server may be asked the same question once only: for going through records that belong together.
/// What others write meanwhile may stay unseen. A transaction reads so by itself.
class Reading {
public:
    explicit Reading(Workspace& workspace);
    ~Reading();
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

private:
    Workspace& workspace_;
};

/// A scope that writes all or nothing: rolls back unless commit() was called. A transaction inside another leaves the
/// last word to the outer one; given up, it takes back what was written in it and nothing else.
class Transaction {
public:
    /// Takes the locks; waits for other workstations 10 s at most, then throws. `deed` tells the journal what is done
    /// ("Réception"); the outermost transaction that tells has the word.
    explicit Transaction(Workspace& workspace, const QString& deed = {}, const Locks& locks = Locks::all());
    /// One of the data layer itself, for a change and its entries in the journal.
    Transaction(Workspace& workspace, Engine::Scope scope);
    /// Runs a rule that writes beside others. One that is disturbed is run again, alone: what it does with anything but
    /// the workspace must bear that.
    template <class Rule>
    static auto run(Workspace& workspace, const QString& deed, const Locks& locks, const Rule& rule);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Transaction(Workspace& workspace, const QString& deed, Engine::Scope scope, const Locks& locks);
    void begin(Engine& engine, const Locks& locks);
    void giveUp(Engine& engine);
    void close();
    /// The engine's name of a transaction inside another.
    QString savepoint() const { return QStringLiteral("inner%1").arg(depth_); }

    Workspace& workspace_;
    const Engine::Scope scope_;
    const int depth_; ///< transactions around this one
    const QString outerDeed_;
    bool open_ = true;
};

template <class Rule>
auto Transaction::run(Workspace& workspace, const QString& deed, const Locks& locks, const Rule& rule) {
    for (bool isAgain = false;; isAgain = true) {
        try {
            Transaction transaction(workspace, deed, isAgain ? Locks::all() : locks);
            if constexpr (std::is_void_v<decltype(rule())>) {
                rule();
                return transaction.commit();
            } else {
                const auto result = rule();
                transaction.commit();
                return result;
            }
        } catch (const DataError& error) {
            if (error.number != DataError::Disturbed || workspace.inTransaction() || isAgain) throw;
        }
    }
}

} // namespace molven

#pragma once

#include "data/statement.h"

#include <QHash>
#include <QString>

#include <memory>
#include <unordered_map>

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
    /// transaction has begun. Throws DataError for a file that is missing, damaged, foreign or of a later version.
    Database open(const QString& path);

    bool inTransaction() const { return inTransaction_; }

private:
    friend class Transaction;
    friend class Database;
    friend class Recordset;

    /// Runs one statement with bound values; throws DataError. A statement is prepared once per workspace.
    Statement& run(const QString& sql, const QStringList& values = {});

    QString attach(const QString& path);
    /// Refuses a file that is not ours or that a later version wrote.
    void requireOurs(const QString& schema, const QString& path);

    sqlite3* connection_ = nullptr;
    QHash<QString, QString> schemas_; ///< canonical path -> schema name
    std::unordered_map<QString, std::unique_ptr<Statement>> prepared_;
    bool inTransaction_ = false;
};

/// A scope that writes all or nothing: rolls back unless commit() was called. A transaction opened inside
/// another joins it and leaves the commit to the outer one.
class Transaction {
public:
    /// Takes the write lock of every open file; waits for other workstations 10 s at most, then throws.
    explicit Transaction(Workspace& workspace);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Workspace& workspace_;
    const bool outermost_;
    bool open_ = true;
};

} // namespace molven

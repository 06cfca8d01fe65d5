#pragma once

#include "data/schema.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace molven::bench {

/// The data engine's own C interface, without the program's data layer: what its speed is measured against.
class BareEngine {
public:
    /// Opens the first file and attaches the others as f1, f2, ... with the settings of the program's own workspaces.
    explicit BareEngine(const QStringList& paths);
    ~BareEngine();
    BareEngine(const BareEngine&) = delete;
    BareEngine& operator=(const BareEngine&) = delete;

    void execute(const char* sql);
    /// One prepared statement, kept by the caller.
    using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;
    Statement prepare(const QString& sql);
    /// Binds the values, runs to the end and reads every column; answers the number of rows.
    static int run(const Statement& statement, const std::vector<QByteArray>& values);

private:
    sqlite3* connection_ = nullptr;
};

/// "insert into SCHEMA.TABLE values (?,...)".
QString insertion(const Table& table, const QString& schema);

/// The values of a record of which these fields are known, the others being empty.
std::vector<QByteArray> recordValues(const Table& table, const std::vector<std::pair<const Field*, QByteArray>>& known);

} // namespace molven::bench

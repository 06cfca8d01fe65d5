#pragma once

#include "data/postgres/connection.h"
#include "data/statement.h"

namespace molven::postgres {

class Engine;

/// A statement whose whole result is with the workstation when run() returns.
class Statement : public molven::Statement {
public:
    Statement(Engine& engine, const QString& sql);

    void run(const QStringList& values) override;
    bool next() override;
    void finish() override;

    QByteArrayView bytes(int column) const override;
    qint64 integer(int column) const override;

    Command with(const QStringList& values) const { return {sql_, values, isOften_}; }
    /// It only reads; its answer stays the same while none of its tables is written.
    bool isRead() const { return isRead_; }
    /// The tables that it names with their file, "vente.strlive"; the first is the one that it writes.
    const QStringList& tables() const { return tables_; }

private:
    Engine& engine_;
    const QString sql_;  ///< with the server's marks
    const bool isOften_; ///< worth preparing
    const bool isRead_;
    const QStringList tables_;
    Answer answer_;
    int row_ = -1;
};

} // namespace molven::postgres

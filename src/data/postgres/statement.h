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
    qint64 changed() const override;
    qint64 insertedKey() const override;

private:
    Engine& engine_;
    const QString sql_;  ///< with the server's marks
    const bool isOften_; ///< worth preparing
    const bool writes_;
    Result result_;
    int row_ = -1;
};

} // namespace molven::postgres

#pragma once

#include "data/postgres/connection.h"
#include "data/statement.h"

namespace molven::postgres {

/// A statement whose whole result is with the workstation when run() returns.
class Statement : public molven::Statement {
public:
    Statement(Connection& connection, const QString& sql, const QByteArray& name, std::function<void()> wrote);

    void run(const QStringList& values) override;
    bool next() override;
    void finish() override;

    QByteArrayView bytes(int column) const override;
    qint64 integer(int column) const override;
    qint64 changed() const override;
    qint64 insertedKey() const override;

private:
    Connection& connection_;
    const QString sql_;     ///< with the server's marks
    const QByteArray name_; ///< empty for one that is not worth preparing
    const std::function<void()> wrote_;
    const bool writes_;
    int generation_ = 0; ///< of the connection in which it is prepared
    Result result_;
    int row_ = -1;
};

} // namespace molven::postgres

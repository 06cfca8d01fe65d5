#pragma once

#include "data/statement.h"

#include <QByteArray>
#include <QList>

struct sqlite3;
struct sqlite3_stmt;

namespace molven::sqlite {

class Statement : public molven::Statement {
public:
    Statement(sqlite3* connection, const QString& sql);
    ~Statement() override;

    void run(const QStringList& values) override;
    bool next() override;
    void finish() override;

    QByteArrayView bytes(int column) const override;
    qint64 integer(int column) const override;
    /// The row it stands on holds the same values, kind included, as another's.
    bool equals(const Statement& other) const;

private:
    void step();

    sqlite3* connection_;
    sqlite3_stmt* statement_ = nullptr;
    QList<QByteArray> bound_; ///< values that the engine reads while it runs
    bool onRow_ = false;      ///< the engine stands on a row
    bool unread_ = false;     ///< which next() has not handed over
};

} // namespace molven::sqlite

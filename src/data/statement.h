#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

struct sqlite3;
struct sqlite3_stmt;

namespace molven {

/// One statement of the engine, prepared once and run many times. Every function throws DataError on a fault.
class Statement {
public:
    Statement(sqlite3* connection, const QString& sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Runs it with these values for its question marks, a null text for the engine's null. One without rows is over
    /// when this returns.
    void run(const QStringList& values);
    /// Moves to the next row; false behind the last, where the statement is over.
    bool next();
    /// Ends it before its last row.
    void finish();

    QString text(int column) const;
    /// The same in UTF-8, until the next row.
    QByteArrayView bytes(int column) const;
    qint64 integer(int column) const;
    /// The row it stands on holds the same values, kind included, as another's.
    bool equals(const Statement& other) const;
    /// Records that the last run changed.
    qint64 changed() const;
    /// Key of the record that the last run inserted.
    qint64 insertedKey() const;

private:
    void step();

    sqlite3* connection_;
    sqlite3_stmt* statement_ = nullptr;
    bool onRow_ = false;  ///< the engine stands on a row
    bool unread_ = false; ///< which next() has not handed over
};

} // namespace molven

#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace molven {

/// One statement of an engine, prepared once and run many times. Every function throws DataError on a fault.
class Statement {
public:
    Statement() = default;
    virtual ~Statement() = default;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Runs it with these values for its question marks, a null text for the engine's null. One without rows is over
    /// when this returns.
    virtual void run(const QStringList& values) = 0;
    /// Moves to the next row; false behind the last, where the statement is over.
    virtual bool next() = 0;
    /// Ends it before its last row.
    virtual void finish() = 0;

    QString text(int column) const { return QString::fromUtf8(bytes(column)); }
    /// The same in UTF-8, until the next row. A number is written without useless zeros.
    virtual QByteArrayView bytes(int column) const = 0;
    virtual qint64 integer(int column) const = 0;
};

} // namespace molven

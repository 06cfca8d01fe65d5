#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace molven {

/// A database file of the Jet engine, versions 3 and 4, to be read only.
class JetFile {
public:
    /// Throws DataError for what is no such file, or one too damaged to tell its tables.
    explicit JetFile(const QString& path);
    ~JetFile();
    JetFile(const JetFile&) = delete;
    JetFile& operator=(const JetFile&) = delete;

    enum class Kind { Text, Number, YesNo, Date, Other };
    struct Column {
        QString name;
        Kind kind;
    };

    /// Tables that the users made, in the order of the file.
    const QStringList& tables() const { return tables_; }
    /// Throws DataError for a table that cannot be read.
    QList<Column> columns(const QString& table) const;
    /// Records that the file says a table has.
    qint64 announced(const QString& table) const;
    /// Hands over the records one by one: the values of the columns in order, null where there is none. A number has a
    /// point, a date is "dd/mm/yyyy", yes and no are "O" and "N". Answers how many could be read; a damaged table gives
    /// fewer than it announces.
    qint64 read(const QString& table, const std::function<void(const QStringList& values)>& row) const;

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
    QStringList tables_;
};

} // namespace molven

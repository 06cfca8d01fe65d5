#pragma once

#include "data/locks.h"
#include "data/schema.h"
#include "data/statement.h"
#include "data/written.h"

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace molven {

class Dialect;

/// One connection to where database files lie. Every function throws DataError on a fault.
class Engine {
public:
    enum class Opening { Existing, New };
    /// What a transaction inside another is for: a rule, after whose fault its caller may go on, or one change of
    /// records and its entries in the journal, whose fault may end the whole.
    enum class Scope { Rule, Change };
    /// An index as it stands, in the engine's own words.
    struct MadeIndex {
        QString name;
        QString definition;
    };

    /// The engine of the place that a path names; attach() opens it. With Opening::New the first file is made.
    static std::unique_ptr<Engine> at(const QString& path, Opening opening = Opening::Existing);
    /// The address of the server that a path lies at; empty for a file of a folder.
    static QString server(const QString& path);
    /// One name for each file, however its path is written.
    static QString canonical(const QString& path);
    static bool exists(const QString& path);
    static void discard(const QString& path);
    /// Throws DataError unless a file lies there; on a server version() tells.
    static void require(const QString& path);

    virtual ~Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    virtual const Dialect& dialect() const = 0;
    /// Whether what it answers travels: lists are read as far as they are looked at.
    virtual bool isFar() const = 0;
    /// Makes the tables of a file reachable; answers what stands before their names.
    virtual QString attach(const QString& path) = 0;
    virtual void detach(const QString& schema) = 0;
    /// Version of the layout that a file has; nothing when it is none of ours.
    virtual std::optional<qint64> version(const QString& schema) = 0;
    virtual void markAsOurs(const QString& schema, qint64 version) = 0;

    /// Runs one statement with bound values. It is prepared once.
    Statement& run(const QString& sql, const QStringList& values = {});
    /// The same for one that adds, changes or removes records. Within a transaction a server may be told later, at the
    /// latest with the next statement that reads or the commit.
    Written write(const QString& sql, const QStringList& values = {});
    /// Records of which an update noted the same change.
    struct Noted {
        QString change;
        qint64 count;
        QByteArray keys;       ///< each with a line feed behind
        QStringList manyLined; ///< keys that have one themselves
    };
    /// What the last statement that wrote has noted of its records, in the order in which it came upon them, where the
    /// engine is not far. To note is for the new value of a field: `noted(key, value, change)` gives the value, and so
    /// does `noted(key, value)` with the change of the record before; `alike(...)`, which is asked first, tells whether
    /// these are the values that it was given for the record before, 127 at most: two a field of the widest table.
    virtual QList<Noted> noted() = 0;
    /// These values will be asked for by this statement within the transaction or the reading that is open: what a
    /// server has to be asked is asked along with the next question.
    virtual void foresee(const QString& sql, const QList<QStringList>& values) = 0;
    /// Until endReading() the engine may answer the same question as it did before, unless something was written here.
    virtual void beginReading() = 0;
    virtual void endReading() noexcept = 0;

    /// Begins a transaction that has these for itself; waits for other workstations 10 s at most, then throws.
    virtual void begin(const Locks& locks) = 0;
    /// The transaction gets these besides, without waiting. Throws DataError::Disturbed when another has one.
    virtual void lockBesides(const Locks& locks) = 0;
    /// Whether the transaction has everything for itself.
    virtual bool isAlone() const = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;
    virtual void savepoint(const QString& name, Scope scope) = 0;
    /// What was written since the savepoint of that name stays, as far as the transaction does.
    virtual void release(const QString& savepoint, Scope scope) = 0;
    /// Takes back what was written since the savepoint of that name; a fault since then is forgotten.
    virtual void rollbackTo(const QString& savepoint, Scope scope) = 0;
    /// While a statement works, asks every few milliseconds whether to go on; no function ends it.
    virtual void watch(std::function<bool()> goesOn) = 0;

    /// Where statements of an administrator find the tables that they name without a file, until lookNowhere().
    virtual void lookIn(const QString& schema) = 0;
    virtual void lookNowhere() noexcept = 0;
    /// Another value after every commit of another connection to this file, the same until then.
    virtual qint64 changesElsewhere(const QString& schema) = 0;
    /// The engine's own integrity check; empty when sound, else one line a fault.
    virtual QStringList integrityFaults(const QString& schema) = 0;
    /// Empty for a table that is not there.
    virtual QStringList columns(const QString& schema, const Table& table) = 0;
    virtual QList<MadeIndex> indexes(const QString& schema, const Table& table) = 0;
    /// How indexes() would tell of an index with these traits.
    virtual QString indexDefinition(const QString& schema, const Table& table, const Index& index, const QString& name,
                                    Uniqueness uniqueness) const = 0;
    virtual void createIndex(const QString& schema, const Table& table, const Index& index, const QString& name,
                             Uniqueness uniqueness) = 0;
    virtual void dropIndex(const QString& schema, const QString& name) = 0;
    /// What the file holds besides these tables and their indexes: "trigger x", "table y".
    virtual QStringList foreignObjects(const QString& schema, const QList<const Table*>& tables) = 0;
    /// Fields that hold something else than they are for, and in how many records.
    virtual QList<std::pair<const Field*, qint64>> misfits(const QString& schema, const Table& table) = 0;

    /// Adds many records, each a list of values that begins with its key, in one go; a null text is the engine's null.
    virtual void load(const QString& qualifiedTable, const QString& columns, const QList<QStringList>& rows) = 0;
    /// To be called once records were loaded: further ones get keys behind theirs.
    virtual void loaded(const QString& qualifiedTable) = 0;

protected:
    Engine() = default;
    virtual std::unique_ptr<Statement> prepare(const QString& sql) = 0;
    virtual Written written(Statement& statement, const QStringList& values) = 0;
    /// Refuses to go on in a transaction that the engine has undone by itself.
    virtual void requireGoing() = 0;

    /// The statement of this text, made when it is asked for first.
    Statement& prepared(const QString& sql);

    std::unordered_map<QString, std::unique_ptr<Statement>> prepared_;
};

} // namespace molven

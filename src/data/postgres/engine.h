#pragma once

#include "data/engine.h"
#include "data/postgres/connection.h"

namespace molven::postgres {

/// The database of a dossier, in which each file of the catalogue is a schema.
class Engine : public molven::Engine {
public:
    /// With Opening::New the database is prepared for the program's tables.
    Engine(const QString& address, Opening opening);
    ~Engine() override;

    /// Whether the schema of that file stands at its address.
    static bool exists(const QString& path);
    static void discard(const QString& path);

    const Dialect& dialect() const override;
    QString attach(const QString& path) override;
    void detach(const QString& schema) override;
    bool isOurs(const QString& schema) override;
    qint64 version(const QString& schema) override;
    void markAsOurs(const QString& schema, qint64 version) override;

    void begin() override;
    void commit() override;
    void rollback() override;
    void rollbackTo(const QString& savepoint) override;
    void watch(std::function<bool()> goesOn) override { goesOn_ = std::move(goesOn); }
    /// A statement with the server's marks; one that writes is told to the others with the commit.
    Result run(const QString& sql, const QStringList& values, bool often, bool writes);
    using molven::Engine::run;

    void lookIn(const QString& schema) override;
    void lookNowhere() noexcept override;
    qint64 changesElsewhere(const QString& schema) override;
    QStringList integrityFaults(const QString& schema) override;
    QStringList columns(const QString& schema, const Table& table) override;
    QList<MadeIndex> indexes(const QString& schema, const Table& table) override;
    QString indexDefinition(const QString& schema, const Table& table, const Index& index, const QString& name,
                            Uniqueness uniqueness) const override;
    void createIndex(const QString& schema, const Table& table, const Index& index, const QString& name,
                     Uniqueness uniqueness) override;
    void dropIndex(const QString& schema, const QString& name) override;
    QStringList foreignObjects(const QString& schema, const QList<const Table*>& tables) override;
    QList<std::pair<const Field*, qint64>> misfits(const QString& schema, const Table& table) override;
    void load(const QString& qualifiedTable, const QString& columns, const QList<QStringList>& rows) override;
    void loaded(const QString& qualifiedTable) override;

protected:
    std::unique_ptr<molven::Statement> prepare(const QString& sql) override;
    void requireGoing() override;

private:
    /// The connection in use while this lives: the transaction's, else one of the pool.
    class Lease;

    const QString address_;
    std::unique_ptr<Connection> held_; ///< by a transaction, or by an administrator's look
    std::function<bool()> goesOn_;
    bool inTransaction_ = false;
    bool wrote_ = false; ///< in the transaction that is open
    qint64 counted_ = 0; ///< changes of this workspace
};

/// Two nested ones share the connection.
class Engine::Lease {
public:
    explicit Lease(Engine& engine);
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    Connection* operator->() const { return engine_.held_.get(); }

private:
    Engine& engine_;
    const bool isOwn_;
};

} // namespace molven::postgres

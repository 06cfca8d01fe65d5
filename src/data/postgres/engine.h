#pragma once

#include "data/engine.h"
#include "data/postgres/connection.h"

#include <QHash>
#include <QSet>

#include <optional>

namespace molven::postgres {

class Statement;

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
    bool isFar() const override { return true; }
    QString attach(const QString& path) override;
    void detach(const QString& schema) override;
    /// Files that are opened one after the other are asked for at once.
    std::optional<qint64> version(const QString& schema) override;
    void markAsOurs(const QString& schema, qint64 version) override;

    void begin(const Locks& locks) override;
    void lockBesides(const Locks& locks) override;
    bool isAlone() const override { return isAlone_; }
    void commit() override;
    void rollback() override;
    void savepoint(const QString& name, Scope scope) override;
    void release(const QString& savepoint, Scope scope) override;
    void rollbackTo(const QString& savepoint, Scope scope) override;
    QList<Noted> noted() override { return {}; }
    void foresee(const QString& sql, const QList<QStringList>& values) override;
    void beginReading() override { ++readings_; }
    void endReading() noexcept override;
    void watch(std::function<bool()> goesOn) override { goesOn_ = std::move(goesOn); }
    /// The answer to a statement, behind everything that waits to be told.
    Answer ask(const Statement& statement, const QStringList& values);

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
    Written written(molven::Statement& statement, const QStringList& values) override;
    void requireGoing() override;

private:
    /// A statement that the server is told of with the next one that reads.
    struct Waiting {
        Command command;
        std::optional<Written::Count> count = {}; ///< once it was told
    };
    /// An answer, and when it was given.
    struct Kept {
        Answer answer;
        qint64 moment;
    };
    struct Foreseen {
        const Statement* statement;
        Command command;
    };
    std::unique_ptr<Connection> connection() const;
    QHash<QString, std::optional<qint64>> versions();
    /// Tells the server what waits, then these; the answers to these.
    std::vector<Result> tell(const std::vector<Command>& further);
    void wait(const std::shared_ptr<Waiting>& command);
    /// What the statement wrote, if need be by telling the server now.
    Written::Count outcome(Waiting& waiting);

    bool keeps() const { return inTransaction_ || readings_ > 0; }
    /// A question in few letters: statements live as long as the engine.
    static QString question(const Statement& statement, const Command& command);
    /// The answer that was given to a question, as long as its tables were not written since.
    Answer kept(const Statement& statement, const QString& asked) const;
    void keep(const Statement& statement, const QString& asked, const Answer& answer);
    void forget();

    /// The connection in use while this lives: the transaction's, else one of the pool.
    class Lease;

    const QString address_;
    bool isPrepared_ = false;          ///< the database has what the program's statements need
    std::unique_ptr<Connection> held_; ///< by a transaction, or by an administrator's look
    std::function<bool()> goesOn_;
    bool inTransaction_ = false;
    bool wrote_ = false;    ///< in the transaction that is open
    bool isSpoilt_ = false; ///< a change in it was given up half-way
    bool isAlone_ = false;
    bool hasSite_ = false; ///< has the lock of whoever writes
    QSet<int> locked_;     ///< by the transaction that is open
    std::vector<std::shared_ptr<Waiting>> waiting_;
    qsizetype waitingSize_ = 0; ///< of their values

    int readings_ = 0;
    QHash<QString, Kept> kept_;
    QHash<QString, Foreseen> foreseen_;              ///< by question, until the next one is asked
    QHash<QString, std::optional<qint64>> versions_; ///< of all schemas, until the next question
    QHash<QString, qint64> writtenAt_;               ///< table -> moment
    qint64 moment_ = 0;                              ///< counts questions and changes
    qint64 counted_ = 0;                             ///< changes of this workspace
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

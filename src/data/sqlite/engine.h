#pragma once

#include "data/sqlite/change_notes.h"

struct sqlite3;

namespace molven::sqlite {

/// One connection to database files of a folder: the first file is its main database, the others are attached, so that
/// a commit covers all of them.
class Engine : public molven::Engine {
public:
    explicit Engine(Opening opening) : opening_(opening) {}
    ~Engine() override;

    const Dialect& dialect() const override;
    QString attach(const QString& path) override;
    void detach(const QString& schema) override;
    std::optional<qint64> version(const QString& schema) override;
    void markAsOurs(const QString& schema, qint64 version) override;

    void begin(const Locks& locks) override;
    void lockBesides(const Locks&) override {}
    bool isAlone() const override { return true; }
    bool isFar() const override { return false; }
    void commit() override;
    void rollback() override;
    void savepoint(const QString& name, Scope scope) override;
    void release(const QString& savepoint, Scope scope) override;
    void rollbackTo(const QString& savepoint, Scope scope) override;
    QList<Noted> noted() override { return notes_.taken(); }
    void foresee(const QString&, const QList<QStringList>&) override {}
    void beginReading() override {}
    void endReading() noexcept override {}
    void watch(std::function<bool()> goesOn) override;

    void lookIn(const QString&) override {}
    void lookNowhere() noexcept override {}
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
    /// A number that the engine keeps in the head of a file.
    qint64 mark(const QString& schema, const char* name);

    const Opening opening_;
    ChangeNotes notes_;
    sqlite3* connection_ = nullptr;
    int attached_ = 0;
    bool inTransaction_ = false;
    bool isSpoilt_ = false; ///< a change in it was given up half-way
    std::function<bool()> goesOn_;
};

} // namespace molven::sqlite

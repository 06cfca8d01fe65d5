#pragma once

#include "data/database.h"
#include "data/engine.h"
#include "data/journal_keys.h"
#include "data/written.h"

#include <QStringList>

#include <functional>

namespace molven {

/// Whom this process works for, as the journals name him.
namespace author {
/// Name of the machine.
QString workstation();
QString systemUser();
QString programVersion();
/// The code of the operator, where the dossier keeps one; empty until set.
QString operatorCode();
void setOperatorCode(const QString& code);
} // namespace author

/// Writes the changes of one table into the journal of its file, when both keep one; see strjournal. With the first
/// change of a new day the former records are sealed.
class Journal {
public:
    /// A table in one of its files.
    struct Place {
        Workspace& workspace;
        Engine& engine;
        QString qualified; ///< its name behind its file's, "main.strproduit"
        const Table& table;
    };
    /// A field, and how the engine is told its new value.
    struct Change {
        const Field* field;
        Piece after;
    };
    static QList<Change> changesOf(const QList<Assignment>& assignments);
    /// Changes the records that a condition selects, and that a further one finds as they were read; those that are
    /// left as they are get no entry. A caller who finds fewer changed than selected must give up the transaction.
    static Written update(const Place& place, const QList<Change>& changes, const Criterion& criterion,
                          const Criterion& asRead = {});
    /// Runs another statement that writes a table, once the journal was told: both or neither.
    static Written write(const Place& place, const QString& sql, const QStringList& values,
                         const std::function<void(Journal&)>& tell);
    /// The same for what takes several statements.
    static Written write(const Place& place, const std::function<Written()>& statements,
                         const std::function<void(Journal&)>& tell);

    /// Records are added.
    void added(const QList<Record>& records);
    /// Records of the same table in another file of the workspace are added as they are.
    void arriving(const QString& fromTable, const Criterion& criterion);
    /// The records that a table of an older file already holds; its journal answers for them from now on.
    /// Each one is told.
    static void takeOver(const Place& place, const std::function<void()>& told);
    /// How many records that a statement changes stand under no key, for the engine to look through at every question
    /// about one of the table; fewer stand under their own keys or their neighbours'. Tests have it small.
    static inline int veryMany = 256;
    /// The records that a condition selects will be deleted.
    void removing(const Criterion& criterion);

    /// Tells the changes of some records that meet a further criterion, oldest first, each as an entry of one record.
    static void read(Database file, const JournalKeys& keys, const Criterion& further,
                     const std::function<void(const Record& entry)>& tell);

    /// What of a file's journal differs from its seals, one French line a fault; empty when nothing was altered,
    /// inserted or removed in a sealed day.
    static QStringList faults(Database file);

private:
    explicit Journal(const Place& place);

    /// Enters records that came, one after the other; neighbours share an entry.
    class Arrivals;
    /// Whether the file keeps a journal; its former days are sealed when it is asked first.
    bool active();
    QStringList head();
    /// Adds one entry: how, key or keys, and value as strjournal has them.
    void add(const QString& key, const QString& kind, const QString& value, const QString& keys = {});
    /// Enters what is about to change.
    void changing(const QList<Change>& changes, const Criterion& criterion);
    /// The new value of the first of these fields, noted by an update together with all that changes in its record.
    QString noting(const QList<Change>& changes, Sql& sql) const;
    /// Enters what an update has noted.
    void enterNoted(const QList<Engine::Noted>& changes);
    /// The JSON object of what changes in a record.
    static QString changedFields(const QList<Change>& changes, Sql& sql);
    /// Adds the entries that a selection gives: key, how, value and keys, and where they come from.
    void enter(const Piece& entries);
    void sealFormerDays();

    Workspace& workspace_;
    Engine& engine_;
    const QString qualified_;
    const QString file_; ///< "main", "f1", ...
    const Table& table_;
};

} // namespace molven

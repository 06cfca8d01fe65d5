#pragma once

#include "data/database.h"
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
    /// Runs a statement that writes a table, once the journal was told: both or neither.
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
    /// The records that a condition selects will be given these values; those that have them already do not count.
    void changing(const QList<Assignment>& assignments, const Criterion& criterion);
    /// One field of these records will be given a value that the engine computes.
    void computing(const Field& field, const Piece& after, const Criterion& criterion);
    /// They will be deleted.
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
    /// A field about to change, and how the engine is told the new value.
    struct Change {
        const Field* field;
        Piece after;
        bool isComputed; ///< from the record: not the same in all
    };
    /// Whether the file keeps a journal; its former days are sealed when it is asked first.
    bool active();
    QStringList head();
    /// Adds one entry: how, key or keys, and value as strjournal has them.
    void add(const QString& key, const QString& kind, const QString& value, const QString& keys = {});
    /// One of some records, under what their keys share.
    void add(const QString& shared, const QStringList& keys, const QString& kind, const QString& value);
    /// The entries of records that change alike: their keys, each with a line feed behind, and how many they are.
    void addAlike(const QString& named, qint64 count, const QString& changed);
    void changing(const QList<Change>& changes, const Criterion& criterion);
    /// The JSON object of what changes in a record.
    static QString changedFields(const QList<Change>& changes, Sql& sql);
    /// Enters the records that are about to change when they hold the same in all these fields, without sorting them;
    /// false, with nothing written, when they do not.
    bool enterAlike(const QList<Change>& changes, const Criterion& criterion, const Criterion& differ);
    /// The same of records that all hold these values.
    bool enterThoseWith(const QStringList& before, const QList<Change>& changes, const Criterion& criterion);
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

#pragma once

#include "data/criteria.h"
#include "data/record.h"
#include "data/recordset.h"
#include "data/workspace.h"
#include "data/written.h"

#include <optional>

namespace molven {

class Journal;
class Joined;
struct Derived;

/// A value given to one field of many records at once.
struct Assignment {
    std::reference_wrapper<const Field> field;
    QString value;
};

/// The records that have the same values in some fields, and what they add up to.
struct Summary {
    QStringList group;   ///< these values
    qint64 count = 0;    ///< of records
    QList<Decimal> sums; ///< exact, in the order asked
};

/// One database file opened in a workspace. Cheap to copy; lives no longer than its workspace.
/// Every function throws DataError on an engine fault.
class Database {
public:
    /// Creates an empty file of ours with these tables; an existing file is refused.
    static void create(const QString& path, const QList<const Table*>& tables);

    static bool exists(const QString& path);
    /// Takes a file made by create() away again, with all that it holds.
    static void discard(const QString& path);
    /// One name for each file, however its path is written; empty for a file of a folder that is not there.
    static QString canonical(const QString& path);

    /// The records that meet a criterion, in order; see Recordset.
    Recordset select(const Table& table, const Criterion& criterion = {}, const Order& order = {});
    /// The same over this file and others of the workspace that have the table as well: current and archived records.
    Recordset selectWith(const QList<Database>& also, const Table& table, const Criterion& criterion = {},
                         const Order& order = {});
    /// The first such record.
    std::optional<Record> find(const Table& table, const Criterion& criterion, const Order& order = {});
    /// At most so many of them, where the rest is not wanted and would take long to find.
    QList<Record> first(int most, const Table& table, const Criterion& criterion, const Order& order = {});
    /// All of them at once, in memory: for the few that belong to one thing.
    QList<Record> all(const Table& table, const Criterion& criterion, const Order& order = {});
    /// Each of these will be looked for with find(), in the transaction or the Reading that is open.
    void foresee(const Table& table, const QList<Criterion>& criteria);
    /// They will be asked for with all(), likewise.
    void foreseeAll(const Table& table, const Criterion& criterion, const Order& order = {});
    /// These will be asked for, likewise.
    void foreseeCount(const Table& table, const Criterion& criterion = {});
    void foreseeGreatest(const Table& table, const Field& field, const Criterion& criterion = {});
    qint64 count(const Table& table, const Criterion& criterion = {});
    /// Greatest value of a field among the records, empty when there is none.
    QString greatest(const Table& table, const Field& field, const Criterion& criterion = {});
    Decimal sum(const Table& table, const Number& field, const Criterion& criterion = {});
    /// Count of records by value of a field.
    QHash<QString, qint64> countBy(const Table& table, const Field& field, const Criterion& criterion = {});
    /// The same by the values of several fields.
    QHash<QStringList, qint64> countBy(const Table& table, const QList<const Field*>& fields,
                                       const Criterion& criterion = {});
    /// These fields alone of the records, where whole records would be too many.
    QList<QStringList> values(const Table& table, const QList<const Field*>& fields, const Criterion& criterion = {});

    /// Sum of a number by value of a field.
    QHash<QString, Decimal> sumBy(const Table& table, const Field& field, const Number& summed,
                                  const Criterion& criterion = {});
    /// One summary a group, in the order of the groups, by one statement. Without groups one row, if any record is met.
    QList<Summary> summary(const Table& table, const QList<const Field*>& groups, const QList<const Number*>& sums,
                           const Criterion& criterion = {});
    /// Stored form of one field by the value of another that tells the records apart: for going through two fields of
    /// very many records.
    QHash<QString, QString> valuesBy(const Table& table, const Field& field, const Field& value,
                                     const Criterion& criterion = {});

    void insert(const Record& record);
    /// Records of one table, in their order.
    void insert(const QList<Record>& records);
    /// Number of records changed.
    Written update(const Table& table, const QList<Assignment>& assignments, const Criterion& criterion);
    Written remove(const Table& table, const Criterion& criterion = {});
    /// Moves records into the same table of another file of the workspace, as they are; number of records moved.
    qint64 moveTo(Database target, const Table& table, const Criterion& criterion);
    /// Adds to a number of many records at once, from whatever it holds then; number of records changed.
    Written addTo(const Table& table, const Number& field, const Decimal& amount, const Criterion& criterion);
    /// Gives one field the value of another in many records at once; number of records changed.
    Written copyField(const Table& table, const Field& to, const Field& from, const Criterion& criterion);

    /// Adds a record, in order, for each of the joined ones that meet the criterion, by one statement: `values` from
    /// the joined records, `further` from these. For work tables, which keep no journal. Number of records.
    qint64 derive(const Table& table, const QList<Derived>& values, const QList<Derived>& further, const Joined& source,
                  const Criterion& criterion);

    /// Takes all records of a table of another file in the place of its own, with their keys and without a word in the
    /// journal, which comes along as a table of its own. `done` is told how many came. Number of records.
    qint64 takeAll(Database from, const Table& table, const std::function<void(qint64)>& done);

    bool hasTable(const Table& table);
    QStringList columns(const Table& table);
    /// Another value after every commit of another connection to this file, the same until then.
    qint64 changesElsewhere();
    /// Adds a missing column to an old file's table, holding `value` in every record.
    void addColumn(const Table& table, const Field& field, const QString& value);
    /// The engine's own integrity check; empty when sound, else one line a fault.
    QStringList integrityFaults();
    /// First value of the first row that a statement gives, for inspection by tests and administrators. Unqualified
    /// tables are those of this file; in a folder only when it is the first of its workspace.
    QString firstValue(const QString& sql, const QStringList& values = {});

    const QString& path() const { return path_; }
    /// What stands before its tables' names in a statement.
    const QString& schema() const { return schema_; }
    Workspace& workspace() { return *workspace_; }

private:
    friend class Journal;
    friend class Workspace;
    friend class Joined;
    friend class Layout;
    Database(Workspace& workspace, Engine& engine, const QString& schema, const QString& path)
        : workspace_(&workspace), engine_(&engine), schema_(schema), path_(path) {}

    Engine& engine() const { return *engine_; }
    Written write(const Table& table, const QString& sql, const QStringList& values,
                  const std::function<void(Journal&)>& tell);
    /// Derived records from a source in another connection.
    qint64 copyDerived(const Table& table, const QStringList& names, const QList<Derived>& values,
                       const QList<Derived>& further, Statement& rows);
    /// The statement for whole records.
    QString selection(const Table& table, const Criterion& criterion, const Order& order, Sql& sql) const;
    static QString limited(const QString& selection, int most);
    QList<Record> records(const Table& table, const QString& selection, const QStringList& values);
    QString value(const QString& sql, const QStringList& values);
    QString aggregate(const QString& function, const Table& table, const Criterion& criterion);
    void foreseeAggregate(const QString& function, const Table& table, const Criterion& criterion);
    /// The statement for one value of them.
    QString aggregation(const QString& function, const Table& table, const Criterion& criterion, Sql& sql) const;
    QString qualified(const Table& table) const { return schema_ + u'.' + table.name; }

    Workspace* workspace_;
    Engine* engine_;
    QString schema_;
    QString path_;
};

} // namespace molven

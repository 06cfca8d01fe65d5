#include "data/journal.h"

#include "data/clock.h"
#include "data/digest.h"
#include "data/journal_tables.h"
#include "data/row_reader.h"

#include <QSysInfo>

#include <pwd.h>
#include <unistd.h>

namespace molven {

namespace author {

namespace {
QString& code() {
    static QString current;
    return current;
}
} // namespace

QString workstation() {
    static const QString name = QSysInfo::machineHostName();
    return name;
}

QString systemUser() {
    static const QString name = [] {
        const passwd* account = getpwuid(getuid()); // what a variable says, anyone can change
        return account ? QString::fromLocal8Bit(account->pw_name) : QString::number(getuid());
    }();
    return name;
}

QString programVersion() { return QStringLiteral(MOLVEN_VERSION); }
QString operatorCode() { return code(); }
void setOperatorCode(const QString& current) { code() = current; }

} // namespace author

namespace {

constexpr int HeadSize = 8; ///< values that all entries of one statement share

/// A field's value in JSON: a text, or null for a null number.
QString text(const Field& field) {
    return field.kind == Field::Kind::Number ? QStringLiteral("cast(%1 as text)").arg(field.name) : field.name;
}

/// The condition that a field is not yet what it will be, case included.
QString differs(const Field& field, const QString& after) {
    const QString exactly = field.kind == Field::Kind::Number ? QString() : QStringLiteral(" collate binary");
    return QStringLiteral("%1 is not %2%3").arg(field.name, after, exactly);
}

/// The text that names a record to its users.
QString key(const Table& table) {
    QStringList parts;
    for (const Field* field : table.trail()->key) parts.append(field->name);
    return parts.join(QStringLiteral("||'/'||"));
}

/// One JSON object of pieces that each begin with a comma.
QString object(const QStringList& pieces) {
    return QStringLiteral("'{'||substr(%1,2)||'}'").arg(pieces.join(QStringLiteral("||")));
}

/// A null text would be bound as the engine's null, which no column of the journal takes.
QStringList notNull(QStringList values) {
    for (QString& value : values)
        if (value.isNull()) value = QStringLiteral("");
    return values;
}

QString entry(const QString& file) {
    return QStringLiteral("insert into %1.%2 (%3) ").arg(file, strjournal.name, strjournal.columns());
}

} // namespace

Journal::Journal(Workspace& workspace, const QString& qualifiedTable, const Table& table)
    : workspace_(workspace), qualified_(qualifiedTable), file_(qualifiedTable.section(u'.', 0, 0)), table_(table) {}

Journal::Written Journal::write(Workspace& workspace, const QString& qualifiedTable, const Table& table,
                                const QString& sql, const QStringList& values,
                                const std::function<void(Journal&)>& tell) {
    const auto run = [&] {
        const Statement& done = workspace.run(sql, values);
        return Written{done.changed(), done.insertedKey()};
    };
    if (!table.trail()) return run();
    Transaction transaction(workspace);
    Journal journal(workspace, qualifiedTable, table);
    tell(journal);
    const Written written = run();
    transaction.commit();
    return written;
}

bool Journal::active() {
    const auto known = workspace_.journals_.constFind(file_);
    if (known != workspace_.journals_.constEnd()) return *known;
    Statement& row = workspace_.run(
        QStringLiteral("select 1 from %1.sqlite_master where type='table' and name=?").arg(file_), {strjournal.name});
    const bool kept = row.next();
    row.finish();
    workspace_.journals_.insert(file_, kept);
    if (kept) sealFormerDays();
    return kept;
}

QStringList Journal::head() {
    if (workspace_.moment_.isEmpty()) {
        const QDateTime now = Clock::now();
        workspace_.moment_ = now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs);
    }
    const QString day = workspace_.moment_.left(10).remove(u'-');
    return notNull({day, workspace_.moment_.mid(11), author::workstation(), author::systemUser(),
                    author::operatorCode(), author::programVersion(), workspace_.deed_, table_.name});
}

void Journal::added(const Record& record) { found(QStringLiteral("C"), record); }

void Journal::found(const QString& kind, const Record& record) {
    if (!active()) return;
    QStringList parts;
    for (const Field* field : table_.trail()->key) parts.append(record.value(*field));
    workspace_.run(entry(file_) + QStringLiteral("values (?,?,?,?,?,?,?,?,?,?,?)"),
                   head() + notNull({parts.join(u'/'), kind, digest::of(record)}));
}

void Journal::arriving(const QString& fromTable, const Criterion& criterion) {
    if (!active()) return;
    const QString where = criterion.always() ? QString() : QStringLiteral(" where ") + criterion.sql;
    Statement& rows =
        workspace_.run(QStringLiteral("select %1 from %2%3").arg(table_.columns(), fromTable, where), criterion.values);
    while (rows.next()) found(QStringLiteral("C"), RowReader::read(rows, table_, 0));
}

void Journal::takeOver(Workspace& workspace, const QString& qualifiedTable, const Table& table) {
    Journal journal(workspace, qualifiedTable, table);
    if (!table.trail() || !journal.active()) return;
    Statement& rows = workspace.run(QStringLiteral("select %1 from %2").arg(table.columns(), qualifiedTable));
    while (rows.next()) journal.found(QStringLiteral("R"), RowReader::read(rows, table, 0));
}

void Journal::changing(const QList<Assignment>& assignments, const Criterion& criterion) {
    QList<Change> changes;
    QStringList given;
    for (const Assignment& assignment : assignments) {
        const Field& field = assignment.field;
        given.append(RowReader::bound(field, Record::fitted(field, assignment.value)));
        changes.append({&field, QStringLiteral("?%1").arg(HeadSize + given.size())});
    }
    changing(changes, given, criterion);
}

void Journal::copying(const Field& to, const Field& from, const Criterion& criterion) {
    changing({{&to, text(from)}}, {}, criterion);
}

void Journal::changing(const QList<Change>& changes, const QStringList& given, const Criterion& criterion) {
    QStringList pieces, any;
    for (const Change& change : changes) {
        const QString changed = differs(*change.field, change.after);
        any.append(changed);
        pieces.append(QStringLiteral("iif(%1,',\"%2\":'||json_array(%3,%4),'')")
                          .arg(changed, change.field->name, text(*change.field), change.after));
    }
    // The criterion's own marks come first: a bare mark is numbered behind the highest one before it.
    const Criterion changed = criterion && Criterion(u'(' + any.join(QStringLiteral(" or ")) + u')', {});
    enter(QStringLiteral("M"), object(pieces), given, changed);
}

void Journal::removing(const Criterion& criterion) {
    QStringList pieces;
    for (const Field* field : table_.fields())
        pieces.append(
            QStringLiteral("iif(%1 is null or %1='','',',\"%1\":'||json_quote(%2))").arg(field->name, text(*field)));
    enter(QStringLiteral("S"), object(pieces), {}, criterion);
}

void Journal::enter(const QString& kind, const QString& values, const QStringList& bound, const Criterion& criterion) {
    if (!active()) return;
    QStringList marks;
    for (int i = 1; i <= HeadSize; ++i) marks.append(QStringLiteral("?%1").arg(i));
    const QString where = criterion.always() ? QString() : QStringLiteral(" where ") + criterion.sql;
    workspace_.run(entry(file_) + QStringLiteral("select %1,%2,'%3',%4 from %5%6")
                                      .arg(marks.join(u','), key(table_), kind, values, qualified_, where),
                   head() + bound + criterion.values);
}

} // namespace molven

#include "data/journal.h"

#include "data/clock.h"
#include "data/dialect.h"
#include "data/digest.h"
#include "data/engine.h"
#include "data/journal_tables.h"
#include "data/row_reader.h"

#include <QSysInfo>

#include <pwd.h>
#include <unistd.h>

#include <algorithm>

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

/// The text that names a record to its users.
QString key(const Table& table, const Dialect& dialect) {
    QStringList parts;
    for (const Field* field : table.trail()->key) parts.append(dialect.asText(field->name, field->kind));
    return parts.join(QStringLiteral("||'/'||"));
}

/// One JSON object of pieces that each begin with a comma.
QString object(const QStringList& pieces) {
    return QStringLiteral("'{'||substr(%1,2)||'}'").arg(pieces.join(QStringLiteral("||")));
}

/// Records that one entry may name, lest it grow without bound.
constexpr int MostNamed = 4096;
/// Neighbours that share an entry: more than a hundred only where keys are not unique.
constexpr int MostNeighbours = 100;

/// What groups the records that one entry may name: none whose key has more than one line.
QString neighbours(const QString& key) {
    return QStringLiteral("case when instr(%1,'\n')=0 then rowid/%2 else -rowid end").arg(key).arg(MostNamed);
}

QString entry(const QString& file) {
    return QStringLiteral("insert into %1.%2 (%3) ").arg(file, strjournal.name, strjournal.columns());
}

} // namespace

class Journal::Arrivals {
public:
    /// How they came, as jou_gen has it.
    Arrivals(Journal& journal, const QString& kind) : journal_(journal), kind_(kind) {}

    void add(const Record& record) {
        QStringList parts;
        for (const Field* field : record.table().trail()->key) parts.append(record.value(*field));
        const QString key = parts.join(u'/'), family = JournalKeys::family(key);
        if (family.isEmpty() || family != family_ || keys_.size() == MostNeighbours) enter();
        family_ = family;
        keys_.append(key);
        digests_.append(digest::of(record));
    }

    /// To be called behind the last one.
    void enter() {
        const auto lines = [](const QStringList& texts) { return texts.join(u'\n') + u'\n'; };
        if (keys_.size() == 1) journal_.add(keys_.first(), kind_, digests_.first());
        if (keys_.size() > 1) journal_.add(family_, kind_, lines(digests_), u'\n' + lines(keys_));
        keys_.clear();
        digests_.clear();
    }

private:
    Journal& journal_;
    const QString kind_;
    QString family_;
    QStringList keys_, digests_;
};

Journal::Journal(const Place& place)
    : workspace_(place.workspace),
      engine_(place.engine),
      qualified_(place.qualified),
      file_(place.qualified.section(u'.', 0, 0)),
      table_(place.table) {}

Written Journal::write(const Place& place, const QString& sql, const QStringList& values,
                       const std::function<void(Journal&)>& tell) {
    return write(
        place, [&] { return place.engine.write(sql, values); }, tell);
}

Written Journal::write(const Place& place, const std::function<Written()>& statements,
                       const std::function<void(Journal&)>& tell) {
    if (!place.table.trail()) return statements();
    Transaction transaction(place.workspace, Engine::Scope::Change);
    Journal journal(place);
    tell(journal);
    Written written = statements();
    transaction.commit();
    return written;
}

bool Journal::active() {
    const auto known = workspace_.journals_.constFind(file_);
    if (known != workspace_.journals_.constEnd()) return *known;
    const bool kept = !engine_.columns(file_, strjournal).isEmpty();
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
    return {day,
            workspace_.moment_.mid(11),
            author::workstation(),
            author::systemUser(),
            author::operatorCode(),
            author::programVersion(),
            workspace_.deed_,
            table_.name};
}

void Journal::added(const QList<Record>& records) {
    if (!active()) return;
    Arrivals arrivals(*this, QStringLiteral("C"));
    for (const Record& record : records) arrivals.add(record);
    arrivals.enter();
}

void Journal::add(const QString& recordKey, const QString& kind, const QString& value, const QString& keys) {
    Sql sql{engine_.dialect()};
    QStringList marks;
    for (const QString& one : head() + QStringList{recordKey, kind, value, keys}) marks.append(sql.bind(one));
    engine_.write(entry(file_) + QStringLiteral("values (%1)").arg(marks.join(u',')), sql.values);
}

void Journal::arriving(const QString& fromTable, const Criterion& criterion) {
    if (!active()) return;
    Sql sql{engine_.dialect()};
    const QString where = criterion.where(sql);
    Statement& rows = engine_.run(
        QStringLiteral("select %1 from %2%3 order by rowid").arg(table_.columns(), fromTable, where), sql.values);
    Arrivals arrivals(*this, QStringLiteral("C"));
    while (rows.next()) arrivals.add(RowReader::read(rows, table_, 0));
    arrivals.enter();
}

void Journal::takeOver(const Place& place, const std::function<void()>& told) {
    const Table& table = place.table;
    Journal journal(place);
    if (!table.trail() || !journal.active()) return;
    Statement& rows =
        place.engine.run(QStringLiteral("select %1 from %2 order by rowid").arg(table.columns(), place.qualified));
    Arrivals arrivals(journal, QStringLiteral("R"));
    while (rows.next()) {
        arrivals.add(RowReader::read(rows, table, 0));
        told();
    }
    arrivals.enter();
}

void Journal::changing(const QList<Assignment>& assignments, const Criterion& criterion) {
    QList<Change> changes;
    for (const Assignment& assignment : assignments) {
        const Field& field = assignment.field;
        const QString after = RowReader::bound(field, Record::fitted(field, assignment.value));
        changes.append({&field, [after](Sql& sql) { return sql.bindOrNull(after); }, false});
    }
    changing(changes, criterion);
}

void Journal::computing(const Field& field, const Piece& after, const Criterion& criterion) {
    changing({{&field, after, true}}, criterion);
}

void Journal::changing(const QList<Change>& changes, const Criterion& criterion) {
    const Criterion differ([&changes](Sql& sql) {
        QStringList any;
        for (const auto& [field, after, isComputed] : changes)
            any.append(sql.dialect.differs(field->name, field->kind, after(sql)));
        return u'(' + any.join(QStringLiteral(" or ")) + u')';
    });
    const auto entries = [&](Sql& sql) {
        const QString name = key(table_, sql.dialect), changed = changedFields(changes, sql);
        return QStringLiteral("case count(*) when 1 then %1 else '' end,'M',%2,"
                              "case count(*) when 1 then '' else '\n'||%3 end")
            .arg(sql.dialect.common(name), changed, sql.dialect.lines(name));
    };
    const auto alike = [&](Sql& sql) {
        QStringList terms{neighbours(key(table_, sql.dialect))};
        for (const auto& [field, after, isComputed] : changes) {
            terms.append(sql.dialect.exactly(field->name, field->kind));
            if (isComputed) terms.append(sql.dialect.exactly(after(sql), field->kind));
        }
        return QStringLiteral(" group by ") + terms.join(u',');
    };
    if (!active() || (!engine_.isFar() && enterAlike(changes, criterion && differ))) return;
    enter(entries, criterion && differ, alike);
}

QString Journal::changedFields(const QList<Change>& changes, Sql& sql) {
    const Dialect& dialect = sql.dialect;
    QStringList pieces;
    for (const auto& [field, after, isComputed] : changes) {
        const auto value = [&] { return isComputed ? dialect.common(after(sql)) : after(sql); };
        const QString before = dialect.common(field->name), changed = dialect.differs(before, field->kind, value());
        pieces.append(
            QStringLiteral("case when %1 then ',\"%2\":'||'['||json_quote(%3)||','||json_quote(%4)||']' else '' end")
                .arg(changed, field->name, dialect.asText(before, field->kind), dialect.asText(value(), field->kind)));
    }
    return object(pieces);
}

bool Journal::enterAlike(const QList<Change>& changes, const Criterion& criterion) {
    if (std::any_of(changes.begin(), changes.end(), [](const Change& change) { return change.isComputed; }))
        return false;
    Sql first{engine_.dialect()};
    QStringList names;
    for (const Change& change : changes) names.append(change.field->name);
    const QString where = criterion.where(first);
    Statement& one = engine_.run(QStringLiteral("select %1 from %2%3 limit 1").arg(names.join(u','), qualified_, where),
                                 first.values);
    if (!one.next()) return true;
    QStringList before;
    for (int i = 0; i < changes.size(); ++i) before.append(RowReader::bound(*changes[i].field, one.text(i)));
    one.finish();

    Sql sql{engine_.dialect()};
    const QString value = changedFields(changes, sql), keys = sql.dialect.lines(key(table_, sql.dialect));
    QStringList others;
    for (int i = 0; i < changes.size(); ++i) {
        const Field& field = *changes[i].field;
        others.append(sql.dialect.differs(field.name, field.kind, sql.bindOrNull(before[i])));
    }
    const QString isOther = others.join(QStringLiteral(" or ")), among = criterion.where(sql);
    Statement& all = engine_.run(
        QStringLiteral("select %1,%2,count(*),sum(%3) from %4%5").arg(value, keys, isOther, qualified_, among),
        sql.values);
    all.next();
    const qint64 count = all.integer(2);
    const QString changed = all.text(0), named = all.text(1); // each behind the one before, with a line feed behind
    const bool areAlike = all.integer(3) == 0 && named.count(u'\n') == count;
    all.finish();
    if (!areAlike) return false;
    if (count == 1) return add(named.chopped(1), QStringLiteral("M"), changed), true;
    for (qsizetype from = 0, to = 0; from < named.size(); from = to) {
        for (int taken = 0; taken < MostNamed && to < named.size(); ++taken) to = named.indexOf(u'\n', to) + 1;
        add({}, QStringLiteral("M"), changed, u'\n' + named.sliced(from, to - from));
    }
    return true;
}

void Journal::removing(const Criterion& criterion) {
    const auto entries = [this](Sql& sql) {
        QStringList pieces;
        for (const Field* field : table_.fields()) {
            const QString text = sql.dialect.asText(field->name, field->kind);
            pieces.append(QStringLiteral("case when coalesce(%1,'')='' then '' else ',\"%2\":'||json_quote(%1) end")
                              .arg(text, field->name));
        }
        return QStringLiteral("%1,'S',%2,''").arg(key(table_, sql.dialect), object(pieces));
    };
    enter(entries, criterion);
}

void Journal::enter(const Piece& entries, const Criterion& criterion, const Piece& grouping) {
    if (!active()) return;
    Sql sql{engine_.dialect()};
    QStringList marks;
    for (const QString& value : head()) marks.append(sql.bind(value));
    const QString given = entries(sql), where = criterion.where(sql), groups = grouping ? grouping(sql) : QString();
    engine_.write(
        entry(file_) +
            QStringLiteral("select %1,%2 from %3%4%5").arg(marks.join(u','), given, qualified_, where, groups),
        sql.values);
}

} // namespace molven

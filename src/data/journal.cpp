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

/// An entry of nothing, in JSON.
const QString NothingChanged = QStringLiteral("{}");

QString lines(const QStringList& texts) { return texts.join(u'\n') + u'\n'; }

/// Keys that stand under one, each with a line feed behind, as sharing() parts them.
struct Shared {
    QString key;
    QString keys;
};

QList<Shared> byFamily(const QByteArray& keys) {
    if (keys.isEmpty()) return {};
    QMap<QString, QString> families;
    for (const QString& key : QString::fromUtf8(keys).chopped(1).split(u'\n')) {
        const QString family = JournalKeys::family(key);
        families[family.isEmpty() ? key : family] += key + u'\n';
    }
    QList<Shared> shared;
    for (auto family = families.begin(); family != families.end(); ++family)
        shared.append({family.key(), family.value()});
    return shared;
}

QList<Shared> byNumber(const QByteArray& keys) {
    QList<Shared> shared;
    for (qsizetype from = 0, to = 0; from < keys.size(); from = to) {
        for (int taken = 0; taken < MostNamed && to < keys.size(); ++taken) to = keys.indexOf('\n', to) + 1;
        shared.append({QString(), QString::fromUtf8(keys.sliced(from, to - from))});
    }
    return shared;
}

/// Of a selection of keys and how many they are in all (`named`, `total`): what they stand under, and in which part of
/// it. A key of more than one line stands alone.
QString sharing(const Dialect& dialect) {
    return QStringLiteral("case when instr(named,'\n')>0 then named when total>=%1 then '' when %2 then "
                          "substr(named,1,length(named)-2) else named end as shared,"
                          "case when instr(named,'\n')>0 then -rowid when total>=%1 then rowid/%3 else 0 end as part")
        .arg(QString::number(Journal::veryMany),
             dialect.matches(QStringLiteral("named"), QStringLiteral("?*[0-9][0-9]")), QString::number(MostNamed));
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

QList<Journal::Change> Journal::changesOf(const QList<Assignment>& assignments) {
    QList<Change> changes;
    for (const Assignment& assignment : assignments) {
        const Field& field = assignment.field;
        const QString after = RowReader::bound(field, Record::fitted(field, assignment.value));
        changes.append({&field, [after](Sql& sql) { return sql.bindOrNull(after); }});
    }
    return changes;
}

Written Journal::update(const Place& place, const QList<Change>& changes, const Criterion& criterion,
                        const Criterion& asRead) {
    const auto run = [&](const Journal* noting) {
        Sql sql{place.engine.dialect()};
        QStringList sets;
        for (const Change& change : changes)
            sets.append(change.field->name + u'=' +
                        (noting && sets.isEmpty() ? noting->noting(changes, sql) : change.after(sql)));
        const QString where = (criterion && asRead).where(sql);
        return place.engine.write(QStringLiteral("update %1 set %2%3").arg(place.qualified, sets.join(u','), where),
                                  sql.values);
    };
    if (!place.table.trail()) return run(nullptr);
    Transaction transaction(place.workspace, Engine::Scope::Change);
    Journal journal(place);
    const bool tells = journal.active(), notes = tells && !place.engine.isFar();
    if (tells && !notes) journal.changing(changes, criterion);
    Written written = run(notes ? &journal : nullptr);
    if (notes) journal.enterNoted(place.engine.noted());
    transaction.commit();
    return written;
}

bool Journal::active() {
    const auto known = workspace_.journals_.constFind(file_);
    if (known != workspace_.journals_.constEnd()) return *known;
    QStringList& keeping = workspace_.journalled_[&engine_];
    const bool kept = keeping.contains(file_) || !engine_.columns(file_, strjournal).isEmpty();
    if (kept && !keeping.contains(file_)) keeping.append(file_);
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

void Journal::changing(const QList<Change>& changes, const Criterion& criterion) {
    const Criterion differ([&changes](Sql& sql) {
        QStringList any;
        for (const auto& [field, after] : changes)
            any.append(sql.dialect.differs(field->name, field->kind, after(sql)));
        return u'(' + any.join(QStringLiteral(" or ")) + u')';
    });
    enter([&](Sql& sql) {
        const auto exact = [&](const QString& text) { return sql.dialect.exactly(text, Field::Kind::Label); };
        const QString name = exact(key(table_, sql.dialect)), changed = exact(changedFields(changes, sql)),
                      where = (criterion && differ).where(sql);
        return QStringLiteral("case count(*) when 1 then min(named) else shared end,'M',changed,"
                              "case count(*) when 1 then '' else '\n'||%1 end from (select named,changed,rowid,%2 from "
                              "(select %3 as named,%4 as changed,rowid,count(*) over () as total from %5%6) as one) as "
                              "alike group by shared,part,changed order by min(rowid)")
            .arg(sql.dialect.lines(QStringLiteral("named")), sharing(sql.dialect), name, changed, qualified_, where);
    });
}

QString Journal::changedFields(const QList<Change>& changes, Sql& sql) {
    const Dialect& dialect = sql.dialect;
    QStringList pieces;
    for (const auto& [field, after] : changes) {
        const QString changed = dialect.differs(field->name, field->kind, after(sql));
        pieces.append(QStringLiteral("case when %1 then ',\"%2\":'||'['||%3||','||%4||']' else '' end")
                          .arg(changed, field->name, dialect.json(dialect.asText(field->name, field->kind)),
                               dialect.json(dialect.asText(after(sql), field->kind))));
    }
    return object(pieces);
}

QString Journal::noting(const QList<Change>& changes, Sql& sql) const {
    const QString name = key(table_, sql.dialect);
    QStringList values;
    for (const auto& [field, after] : changes) values << field->name << after(sql);
    const Piece& first = changes.first().after;
    const QString likeBefore = first(sql), other = first(sql), changed = changedFields(changes, sql);
    return QStringLiteral("case when alike(%1) then noted(%2,%3) else noted(%2,%4,%5) end")
        .arg(values.join(u','), name, likeBefore, other, changed);
}

void Journal::enterNoted(const QList<Engine::Noted>& changes) {
    qint64 total = 0;
    for (const Engine::Noted& noted : changes)
        if (noted.change != NothingChanged) total += noted.count;
    const QString kind = QStringLiteral("M");
    for (const Engine::Noted& noted : changes) {
        if (noted.change == NothingChanged) continue;
        for (const QString& key : noted.manyLined) add(key, kind, noted.change);
        for (const auto& [key, keys] : total < veryMany ? byFamily(noted.keys) : byNumber(noted.keys)) {
            const bool isAlone = keys.indexOf(u'\n') == keys.size() - 1;
            add(isAlone ? keys.chopped(1) : key, kind, noted.change, isAlone ? QString() : u'\n' + keys);
        }
    }
}

void Journal::removing(const Criterion& criterion) {
    const auto entries = [&](Sql& sql) {
        QStringList pieces;
        for (const Field* field : table_.fields()) {
            const QString text = sql.dialect.asText(field->name, field->kind);
            pieces.append(QStringLiteral("case when coalesce(%1,'')='' then '' else ',\"%2\":'||%3 end")
                              .arg(text, field->name, sql.dialect.json(text)));
        }
        const QString where = criterion.where(sql);
        return QStringLiteral("%1,'S',%2,'' from %3%4")
            .arg(key(table_, sql.dialect), object(pieces), qualified_, where);
    };
    if (active()) enter(entries);
}

void Journal::enter(const Piece& entries) {
    Sql sql{engine_.dialect()};
    QStringList marks;
    for (const QString& value : head()) marks.append(sql.bind(value));
    const QString given = entries(sql);
    engine_.write(entry(file_) + QStringLiteral("select %1,%2").arg(marks.join(u','), given), sql.values);
}

} // namespace molven

#include "dossier/check/ledger.h"

#include "data/journal_tables.h"
#include "shell/tables.h"
#include "stock/stock_tables.h"
#include "stock/unit_tables.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace molven::check {

namespace {

/// Several records of these may bear one key.
bool repeatsKeys(const Table& table) { return &table == &strconform || &table == &strmvtstk || &table == &strsociete; }

void begin(Sum& sum, const Table&, const QString& digest) { sum = digest::sumOf(digest); }
void begin(Marks& marks, const Table& table, const QString& digest) { marks = digest::read(table, digest); }

void change(Sum& sum, const Entry::Change& one) {
    const digest::Mark field = digest::markOf(*one.field);
    sum += digest::weight(field, digest::markOf(*one.field, one.after)) -
           digest::weight(field, digest::markOf(*one.field, one.before));
}

void change(Marks& marks, const Entry::Change& one) {
    const digest::Mark mark = digest::markOf(*one.field, one.after);
    if (mark == 0)
        marks.remove(one.field);
    else
        marks[one.field] = mark;
}

} // namespace

RecordKey recordKey(QStringView key) {
    RecordKey hash = 0xcbf29ce484222325;
    for (const QChar c : key) hash = (hash ^ c.unicode()) * 0x100000001b3;
    return hash;
}

QString keyOf(const Record& record) {
    QStringList parts;
    for (const Field* field : record.table().trail()->key) parts.append(record.value(*field));
    return parts.join(u'/');
}

Entry::Entry(const Table& table, const Record& entry)
    : key(entry[strjournal.jou_cle]), keyAfter(key), how(entry[strjournal.jou_gen]) {
    if (how == u"C" || how == u"R") digest = entry[strjournal.jou_val];
    if (how != u"M") return;
    const QJsonObject values = QJsonDocument::fromJson(entry[strjournal.jou_val].toUtf8()).object();
    for (auto value = values.begin(); value != values.end(); ++value)
        if (const Field* field = table.field(value.key()))
            changes.append({field, value->toArray()[0].toString(), value->toArray()[1].toString()});
    QStringList parts = key.split(u'/');
    const QList<const Field*>& fields = table.trail()->key;
    for (const Change& change : changes)
        if (const qsizetype place = fields.indexOf(change.field); place >= 0 && place < parts.size())
            parts[place] = change.after;
    keyAfter = parts.join(u'/');
}

template <class Known>
void Ledger<Known>::add(const Entry& entry) {
    const RecordKey key = recordKey(entry.key);
    const bool takesOver = entry.how == u"R";
    if (takesOver && !isTakingOver_) records.clear();
    isTakingOver_ = takesOver;
    if (takesOver || entry.how == u"C") {
        if (records.holds(key) && !repeatsKeys(table_)) records.take(key);
        Known known;
        begin(known, table_, entry.digest);
        return records.put(key, known);
    }
    if (!records.holds(key)) return;
    Known known = records.take(key);
    if (entry.how != u"M") return;
    for (const Entry::Change& one : entry.changes) change(known, one);
    const RecordKey after = recordKey(entry.keyAfter);
    if (after != key) origins.emplace(after, key);
    records.put(after, known);
}

template class Ledger<Sum>;
template class Ledger<Marks>;

} // namespace molven::check

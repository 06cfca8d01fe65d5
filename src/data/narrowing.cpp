// Parts of a selection, found without selecting again.

#include "data/dialect.h"
#include "data/engine.h"
#include "data/recordset.h"
#include "data/statement.h"
#include "data/workspace.h"

#include <algorithm>
#include <numeric>

namespace molven {

namespace {

constexpr int MostFirstValues = 50;
constexpr qint64 KeysAtOnce = 2000, KeysAtOnceAfar = 20'000;

/// The values of the first field of an index, read by leaps over the index.
QString firstValues(const QString& table, const Field& first) {
    return QStringLiteral("with recursive known(v,n) as (select min(%1),1 from %2 union all "
                          "select (select min(%1) from %2 where %1 > known.v),n+1 from known "
                          "where known.v is not null and n<=%3) ")
        .arg(first.name, table)
        .arg(MostFirstValues);
}

const Index* indexWith(const Table& table, const Field& field, qsizetype place) {
    const auto& indexes = table.indexes();
    const auto found = std::find_if(indexes.begin(), indexes.end(),
                                    [&](const Index* index) { return index->fields.value(place) == &field; });
    return found == indexes.end() ? nullptr : *found;
}

/// The field begins with the text, as an index that begins with the field serves it, or one that has it behind another
/// of few values; nothing where there is none.
std::optional<Criterion> servedBeginning(Engine& engine, const QString& tableName, const Table& table,
                                         const Field& field, const QString& text) {
    // Between codes the bounds alone tell; the order of labels puts others between them.
    const Criterion begins =
        field.kind == Field::Kind::Code ? field >= text && field < text + QChar(0xFFFF) : startsWith(field, text);
    if (indexWith(table, field, 0)) return begins;
    const Index* index = indexWith(table, field, 1);
    if (!index) return std::nullopt;
    const Field& first = *index->fields.first();
    const QString known = firstValues(tableName, first);
    Statement& values = engine.run(known + QStringLiteral("select count(*) from known"));
    const bool areFew = values.next() && values.integer(0) <= MostFirstValues;
    values.finish();
    if (!areFew) return std::nullopt;
    return Criterion([first = first.name, known](Sql&) {
               return QStringLiteral("%1 in (%2select v from known)").arg(first, known);
           }) &&
           begins;
}

Criterion hasKey(const QStringList& keys) {
    return Criterion([keys](Sql& sql) { return sql.dialect.hasKey(keys, sql); });
}

Criterion keysBetween(qint64 above, qint64 last) {
    return Criterion([above, last](Sql&) { return QStringLiteral("rowid>%1 and rowid<=%2").arg(above).arg(last); });
}

} // namespace

void Recordset::collect(qsizetype place, const Criterion& criterion, std::optional<qint64> most,
                        std::vector<Key>& found) const {
    Sql sql{engine().dialect()};
    QString text = QStringLiteral("select rowid from %1%2").arg(selection_.tables[place], criterion.where(sql));
    if (most) text += QStringLiteral(" limit ") + sql.bind(QString::number(*most));
    Statement& rows = engine().run(text, sql.values);
    while (rows.next()) found.push_back(selection_.keyOf(place, rows.integer(0)));
}

Recordset Recordset::beginningWith(const QList<const Field*>& fields, const QString& text) const {
    const std::optional<qint64> most = keys_.areWhole() ? std::nullopt : std::optional(Keys::windowSize + 1);
    std::vector<Key> found;
    Criterion any = hasKey({});
    for (qsizetype place = 0; place < selection_.tables.size(); ++place)
        for (const Field* field : fields) {
            const auto begins = servedBeginning(engine(), selection_.tables[place], table(), *field, text);
            if (!begins) continue;
            const std::size_t before = found.size();
            collect(place, *begins, most, found);
            if (found.size() > before) any = any || *begins;
        }
    return reducedTo(found, Keys::windowSize, any);
}

std::optional<Recordset> Recordset::meeting(const Criterion& criterion, const Progress& progress) const {
    std::vector<Key> found;
    const bool isDone =
        keys_.areWhole() ? collectAtHand(criterion, progress, found) : collectAfar(criterion, progress, found);
    return isDone ? std::optional(reducedTo(found, KeysAtOnceAfar, criterion)) : std::nullopt;
}

bool Recordset::collectAtHand(const Criterion& criterion, const Progress& progress, std::vector<Key>& found) const {
    for (qint64 first = 0; first < count(); first += KeysAtOnce) {
        if (!progress(static_cast<int>(first), static_cast<int>(count()))) return false;
        QList<QStringList> keys(selection_.tables.size());
        for (qint64 i = first; i < std::min(first + KeysAtOnce, count()); ++i)
            keys[keys_[i] % keys.size()].append(QString::number(selection_.keyInTable(keys_[i])));
        for (qsizetype place = 0; place < keys.size(); ++place)
            collect(place, hasKey(keys[place]) && criterion, {}, found);
    }
    return true;
}

bool Recordset::collectAfar(const Criterion& criterion, const Progress& progress, std::vector<Key>& found) const {
    QList<qint64> last;
    for (qsizetype place = 0; place < selection_.tables.size(); ++place) last.append(selection_.lastKeyIn(place));
    const qint64 total = std::accumulate(last.begin(), last.end(), qint64(0));
    qint64 seen = 0;
    for (qsizetype place = 0; place < last.size(); seen += last[place++])
        for (qint64 first = 0; first < last[place]; first += KeysAtOnceAfar) {
            if (!progress(static_cast<int>((seen + first) * count() / total), static_cast<int>(count()))) return false;
            collect(place, keysBetween(first, first + KeysAtOnceAfar) && selection_.criterionIn(place) && criterion, {},
                    found);
        }
    return true;
}

/// Where keys are not at hand, few are named, and more are selected anew.
Recordset Recordset::reducedTo(const std::vector<Key>& found, qint64 mostNamed, const Criterion& criterion) const {
    if (keys_.areWhole()) {
        Recordset part = *this;
        part.pages_.clear();
        part.draft_.reset();
        part.keys_.keep(found);
        part.moveFirst();
        return part;
    }
    if (static_cast<qint64>(found.size()) > mostNamed) return Recordset(*workspace_, selection_.meeting(criterion));
    return Recordset(*workspace_, selection_.among(found));
}

} // namespace molven

// Parts of a selection, found without selecting again.

#include "data/dialect.h"
#include "data/engine.h"
#include "data/recordset.h"
#include "data/statement.h"
#include "data/workspace.h"

#include <algorithm>

namespace molven {

namespace {

constexpr int MostFirstValues = 50;
constexpr qint64 KeysAtOnce = 2000;

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

} // namespace

/// Served by an index that begins with the field, or has it behind one of few values.
void Recordset::readBeginnings(Key sign, const Field& field, const QString& text, std::vector<Key>& found) const {
    // Between codes the bounds alone tell; the order of labels puts others between them.
    const Criterion begins =
        field.kind == Field::Kind::Code ? field >= text && field < text + QChar(0xFFFF) : startsWith(field, text);
    const QString& table = tableOf(sign);
    Sql sql{engine_->dialect()};
    const QString isFound = begins.in(sql);
    QString selection;
    if (indexWith(*table_, field, 0)) {
        selection = QStringLiteral("select rowid from %1 where %2").arg(table, isFound);
    } else if (const Index* index = indexWith(*table_, field, 1)) {
        const Field& first = *index->fields.first();
        Statement& values = engine_->run(firstValues(table, first) + QStringLiteral("select count(*) from known"));
        const bool areFew = values.next() && values.integer(0) <= MostFirstValues;
        values.finish();
        if (!areFew) return;
        selection =
            firstValues(table, first) + QStringLiteral("select rowid from %1 where %2 in (select v from known) and %3")
                                            .arg(table, first.name, isFound);
    } else {
        return;
    }
    Statement& rows = engine_->run(selection, sql.values);
    while (rows.next()) found.push_back(rows.integer(0) * sign);
}

Recordset Recordset::beginningWith(const QList<const Field*>& fields, const QString& text) const {
    std::vector<Key> found;
    for (const Key sign : signs())
        for (const Field* field : fields) readBeginnings(sign, *field, text, found);
    return reducedTo(found);
}

std::optional<Recordset> Recordset::meeting(const Criterion& criterion, const Progress& progress) const {
    std::vector<Key> found;
    for (qint64 first = 0; first < count(); first += KeysAtOnce) {
        if (!progress(static_cast<int>(first), static_cast<int>(count()))) return std::nullopt;
        for (const Key sign : signs()) {
            QStringList keys;
            for (qint64 i = first; i < std::min(first + KeysAtOnce, count()); ++i)
                if (const Key key = keys_[static_cast<std::size_t>(i)] * sign; key > 0)
                    keys.append(QString::number(key));
            const Criterion wanted([&keys](Sql& text) { return text.dialect.hasKey(keys, text); });
            Sql sql{engine_->dialect()};
            const QString where = (wanted && criterion).where(sql);
            Statement& rows =
                engine_->run(QStringLiteral("select rowid from %1%2").arg(tableOf(sign), where), sql.values);
            while (rows.next()) found.push_back(rows.integer(0) * sign);
        }
    }
    return reducedTo(found);
}

Recordset Recordset::reducedTo(const std::vector<Key>& kept) const {
    const auto place = [](Key key) { return static_cast<std::size_t>(key < 0 ? -2 * key + 1 : 2 * key); };
    Recordset part = *this;
    part.pages_.clear();
    part.draft_.reset();
    std::size_t places = 0;
    for (const Key key : keys_) places = std::max(places, place(key) + 1);
    std::vector<bool> isKept(places);
    for (const Key key : kept)
        if (place(key) < places) isKept[place(key)] = true;
    std::erase_if(part.keys_, [&](Key key) { return !isKept[place(key)]; });
    part.moveFirst();
    return part;
}

} // namespace molven

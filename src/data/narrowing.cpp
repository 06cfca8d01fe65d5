// Parts of a selection, found without selecting again.

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
    return QStringLiteral("with recursive known(v) as (select min(%1) from %2 union all "
                          "select (select min(%1) from %2 where %1 > known.v) from known where known.v is not null "
                          "limit %3) ")
        .arg(first.name, table)
        .arg(MostFirstValues + 1);
}

const Index* indexWith(const Table& table, const Field& field, qsizetype place) {
    const auto& indexes = table.indexes();
    const auto found = std::find_if(indexes.begin(), indexes.end(),
                                    [&](const Index* index) { return index->fields.value(place) == &field; });
    return found == indexes.end() ? nullptr : *found;
}

} // namespace

/// Served by an index that begins with the field, or has it behind one of few values.
void Recordset::readBeginnings(const Field& field, const QString& text, std::vector<Key>& found) const {
    // Between codes the bounds alone tell; the order of labels puts others between them.
    const Criterion begins =
        field.kind == Field::Kind::Code ? field >= text && field < text + QChar(0xFFFF) : startsWith(field, text);
    QString sql;
    if (indexWith(*table_, field, 0)) {
        sql = QStringLiteral("select rowid from %1 where %2").arg(qualified_, begins.sql);
    } else if (const Index* index = indexWith(*table_, field, 1)) {
        const Field& first = *index->fields.first();
        Statement& values =
            workspace_->run(firstValues(qualified_, first) + QStringLiteral("select count(*) from known"), {});
        const bool areFew = values.next() && values.integer(0) <= MostFirstValues;
        values.finish();
        if (!areFew) return;
        sql = firstValues(qualified_, first) +
              QStringLiteral("select rowid from %1 where %2 in (select v from known) and %3")
                  .arg(qualified_, first.name, begins.sql);
    } else {
        return;
    }
    Statement& rows = workspace_->run(sql, begins.values);
    while (rows.next()) found.push_back(rows.integer(0));
}

Recordset Recordset::beginningWith(const QList<const Field*>& fields, const QString& text) const {
    std::vector<Key> found;
    for (const Field* field : fields) readBeginnings(*field, text, found);
    return reducedTo(found);
}

std::optional<Recordset> Recordset::meeting(const Criterion& criterion, const Progress& progress) const {
    const QString sql =
        QStringLiteral("select rowid from %1 where rowid in (select value from json_each(?))").arg(qualified_) +
        (criterion.always() ? QString() : QStringLiteral(" and ") + criterion.sql);
    std::vector<Key> found;
    for (qint64 first = 0; first < count(); first += KeysAtOnce) {
        if (!progress(static_cast<int>(first), static_cast<int>(count()))) return std::nullopt;
        QStringList keys;
        for (qint64 i = first; i < std::min(first + KeysAtOnce, count()); ++i)
            keys.append(QString::number(keys_[static_cast<std::size_t>(i)]));
        Statement& rows = workspace_->run(sql, QStringList{u'[' + keys.join(u',') + u']'} + criterion.values);
        while (rows.next()) found.push_back(rows.integer(0));
    }
    return reducedTo(found);
}

Recordset Recordset::reducedTo(const std::vector<Key>& kept) const {
    Recordset part = *this;
    part.pages_.clear();
    part.draft_.reset();
    const Key greatest = keys_.empty() ? 0 : *std::max_element(keys_.begin(), keys_.end());
    std::vector<bool> isKept(static_cast<std::size_t>(greatest) + 1);
    for (const Key key : kept)
        if (key <= greatest) isKept[static_cast<std::size_t>(key)] = true;
    std::erase_if(part.keys_, [&](Key key) { return !isKept[static_cast<std::size_t>(key)]; });
    part.moveFirst();
    return part;
}

} // namespace molven

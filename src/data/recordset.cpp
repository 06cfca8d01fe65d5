#include "data/recordset.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/row_reader.h"

#include <algorithm>
#include <cstdlib>

namespace molven {

Recordset::Recordset(Workspace& workspace, const QStringList& qualifiedTables, const Table& table,
                     const Criterion& criterion, const Order& order)
    : workspace_(&workspace), tables_(qualifiedTables), table_(&table), criterion_(criterion), order_(order) {
    requery();
}

Statement& Recordset::keysOf(const Criterion& criterion, const QString& limit) const {
    const QString where = criterion.always() ? QString() : QStringLiteral(" where ") + criterion.sql;
    QString from = tables_[0] + where, key = QStringLiteral("rowid");
    QStringList values = criterion.values;
    if (tables_.size() > 1) {
        key = QStringLiteral("k");
        from = QStringLiteral("(select rowid as k,%1 from %2%4 union all select -rowid as k,%1 from %3%4)")
                   .arg(table_->columns(), tables_[0], tables_[1], where);
        values += criterion.values;
    }
    return workspace_->run(QStringLiteral("select %1 from %2 order by %3%4")
                               .arg(key, from, (order_.terms + QStringList(key)).join(u','), limit),
                           values);
}

void Recordset::requery() {
    pages_.clear();
    keys_.clear();
    Statement& rows = keysOf(criterion_);
    while (rows.next()) keys_.push_back(rows.integer(0));
    moveTo(position_);
}

void Recordset::moveTo(qint64 position) {
    position_ = std::clamp<qint64>(position, 0, count());
    draft_.reset();
}

bool Recordset::findFirst(const Criterion& criterion) {
    Statement& row = keysOf(criterion_ && criterion, QStringLiteral(" limit 1"));
    const Key key = row.next() ? row.integer(0) : 0;
    row.finish();
    const auto found = std::find(keys_.begin(), keys_.end(), key);
    if (found == keys_.end()) return false;
    moveTo(found - keys_.begin());
    return true;
}

const Record& Recordset::record() const { return at(position_); }

const Record& Recordset::at(qint64 position) const {
    if (position < 0 || position >= count())
        throw DataError(DataError::NoCurrentRecord, QStringLiteral("Aucun enregistrement en cours."));
    const auto& found = page(position / PageSize)[static_cast<std::size_t>(position % PageSize)];
    if (!found)
        throw DataError(DataError::RecordDeleted,
                        QStringLiteral("Cet enregistrement a été supprimé sur un autre poste."));
    return *found;
}

const Recordset::Page& Recordset::page(qint64 number) const {
    const auto kept = pages_.constFind(number);
    if (kept != pages_.constEnd()) return *kept;
    const qint64 first = number * PageSize;
    const qint64 size = std::min(PageSize, count() - first);
    QHash<Key, qint64> places;
    for (qint64 i = 0; i < size; ++i) places.insert(keys_[static_cast<std::size_t>(first + i)], i);
    Page read(static_cast<std::size_t>(size));
    for (const Key sign : signs()) {
        QStringList keys;
        for (const Key key : places.keys())
            if ((key < 0) == (sign < 0)) keys.append(QString::number(key * sign));
        if (keys.isEmpty()) continue;
        Statement& rows =
            workspace_->run(QStringLiteral("select rowid,%1 from %2 where rowid in (select value from json_each(?))")
                                .arg(table_->columns(), tableOf(sign)),
                            {u'[' + keys.join(u',') + u']'});
        while (rows.next())
            read[static_cast<std::size_t>(places.value(rows.integer(0) * sign))] = RowReader::read(rows, *table_, 1);
    }
    if (pages_.size() >= PagesKept) pages_.clear();
    return *pages_.emplace(number, std::move(read));
}

std::optional<Record> Recordset::fetch(Key key) const {
    Statement& row =
        workspace_->run(QStringLiteral("select %1 from %2 where rowid = ?").arg(table_->columns(), tableOf(key)),
                        {QString::number(std::abs(key))});
    std::optional<Record> found;
    if (row.next()) found = RowReader::read(row, *table_, 0);
    row.finish();
    return found;
}

void Recordset::edit() {
    if (eof()) throw DataError(DataError::NoCurrentRecord, QStringLiteral("Aucun enregistrement en cours."));
    before_ = fetch(currentKey());
    if (!before_)
        throw DataError(DataError::RecordDeleted,
                        QStringLiteral("Cet enregistrement a été supprimé sur un autre poste."));
    draft_ = before_;
}

void Recordset::edit(const Record& asRead) {
    edit();
    before_ = draft_ = asRead;
}

void Recordset::addNew() {
    before_.reset();
    draft_.emplace(*table_);
}

Record& Recordset::draft() {
    if (!draft_) throw DataError(DataError::NoCurrentRecord, QStringLiteral("Aucune modification en cours."));
    return *draft_;
}

void Recordset::update() {
    if (before_) {
        writeChanges(*before_, draft());
        forget(position_);
    } else {
        const Record& written = draft();
        const QString& table = tables_.first();
        keys_.push_back(Journal::write(*workspace_, table, *table_, RowReader::insertion(table, *table_),
                                       RowReader::values(written), [&](Journal& journal) { journal.added(written); })
                            .key);
        forget(count() - 1);
        position_ = count() - 1;
    }
    draft_.reset();
}

void Recordset::writeChanges(const Record& before, const Record& written) {
    QList<Assignment> changes;
    QStringList sets, given, same, found;
    for (const Field* field : table_->fields()) {
        const bool changed = before.value(*field) != written.value(*field);
        if (changed) {
            changes.append({*field, written.value(*field)});
            sets.append(field->name + QStringLiteral("=?"));
            given.append(RowReader::bound(*field, written.value(*field)));
        }
        if (!changed && table_->keeps(*field)) continue;
        same.append(RowReader::sameAs(*field));
        found.append(RowReader::bound(*field, before.value(*field)));
        if (field->kind == Field::Kind::Number) found.append(found.last());
    }
    if (changes.isEmpty()) return;
    const Criterion here = current();
    const QString& table = tableOf(currentKey());
    const QString sql = QStringLiteral("update %1 set %2 where %3 and %4")
                            .arg(table, sets.join(u','), here.sql, same.join(QStringLiteral(" and ")));
    Transaction transaction(*workspace_);
    const auto done = Journal::write(*workspace_, table, *table_, sql, given + here.values + found,
                                     [&](Journal& journal) { journal.changing(changes, here); });
    if (done.changed != 1)
        throw DataError(
            DataError::RecordChanged,
            QStringLiteral(
                "Un autre poste a modifié cet enregistrement pendant votre saisie. Relisez-le puis recommencez."));
    transaction.commit();
}

void Recordset::remove() {
    record();
    const Criterion here = current();
    const QString& table = tableOf(currentKey());
    Journal::write(*workspace_, table, *table_, QStringLiteral("delete from %1 where %2").arg(table, here.sql),
                   here.values, [&](Journal& journal) { journal.removing(here); });
    keys_.erase(keys_.begin() + position_);
    pages_.clear();
    draft_.reset();
}

Criterion Recordset::current() const { return {QStringLiteral("rowid=?"), {QString::number(std::abs(currentKey()))}}; }

} // namespace molven

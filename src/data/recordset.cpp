#include "data/recordset.h"

#include "data/database.h"
#include "data/engine.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/row_reader.h"

#include <algorithm>
#include <cstdlib>

namespace molven {

Recordset::Recordset(Workspace& workspace, Engine& engine, const QStringList& qualifiedTables, const Table& table,
                     const Criterion& criterion, const Order& order)
    : workspace_(&workspace),
      engine_(&engine),
      tables_(qualifiedTables),
      table_(&table),
      criterion_(criterion),
      order_(order) {
    requery();
}

Statement& Recordset::keysOf(const Criterion& criterion, const QString& limit) const {
    Sql sql{engine_->dialect()};
    QString from = tables_[0] + criterion.where(sql), key = QStringLiteral("rowid");
    if (tables_.size() > 1) {
        key = QStringLiteral("k");
        const QString second = tables_[1] + criterion.where(sql);
        from = QStringLiteral("(select rowid as k,%1 from %2 union all select -rowid as k,%1 from %3) as both_files")
                   .arg(table_->columns(), from, second);
    }
    const QString order = order_.in(sql, key);
    return engine_->run(QStringLiteral("select %1 from %2%3%4").arg(key, from, order, limit), sql.values);
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
        Sql sql{engine_->dialect()};
        const QString isWanted = sql.dialect.hasKey(keys, sql);
        Statement& rows = engine_->run(
            QStringLiteral("select rowid,%1 from %2 where %3").arg(table_->columns(), tableOf(sign), isWanted),
            sql.values);
        while (rows.next())
            read[static_cast<std::size_t>(places.value(rows.integer(0) * sign))] = RowReader::read(rows, *table_, 1);
    }
    if (pages_.size() >= PagesKept) pages_.clear();
    return *pages_.emplace(number, std::move(read));
}

std::optional<Record> Recordset::fetch(Key key) const {
    Statement& row =
        engine_->run(QStringLiteral("select %1 from %2 where rowid = ?").arg(table_->columns(), tableOf(key)),
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
        const QString sql = RowReader::insertion(table, *table_, engine_->dialect());
        const auto done = Journal::write({*workspace_, *engine_, table, *table_}, sql, RowReader::values(written),
                                         [&](Journal& journal) { journal.added(written); });
        keys_.push_back(done.key());
        forget(count() - 1);
        position_ = count() - 1;
    }
    draft_.reset();
}

void Recordset::writeChanges(const Record& before, const Record& written) {
    QList<Assignment> changes;
    QStringList sets, same;
    Sql sql{engine_->dialect()};
    for (const Field* field : table_->fields()) {
        if (before.value(*field) == written.value(*field)) continue;
        changes.append({*field, written.value(*field)});
        sets.append(field->name + u'=' + sql.bindOrNull(RowReader::bound(*field, written.value(*field))));
    }
    if (changes.isEmpty()) return;
    const Criterion here = current();
    const QString isHere = here.in(sql), &table = tableOf(currentKey());
    for (const Field* field : table_->fields())
        if (!table_->keeps(*field) || before.value(*field) != written.value(*field))
            same.append(sql.dialect.same(*field, RowReader::bound(*field, before.value(*field)), sql));
    const QString text = QStringLiteral("update %1 set %2 where %3 and %4")
                             .arg(table, sets.join(u','), isHere, same.join(QStringLiteral(" and ")));
    Transaction transaction(*workspace_, Engine::Scope::Change);
    const auto done = Journal::write({*workspace_, *engine_, table, *table_}, text, sql.values,
                                     [&](Journal& journal) { journal.changing(changes, here); });
    if (done.changed() != 1)
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
    Sql sql{engine_->dialect()};
    const QString text = QStringLiteral("delete from ") + table + here.where(sql);
    Journal::write({*workspace_, *engine_, table, *table_}, text, sql.values,
                   [&](Journal& journal) { journal.removing(here); });
    keys_.erase(keys_.begin() + position_);
    pages_.clear();
    draft_.reset();
}

Criterion Recordset::current() const {
    return Criterion(
        [key = QString::number(std::abs(currentKey()))](Sql& sql) { return QStringLiteral("rowid=") + sql.bind(key); });
}

} // namespace molven

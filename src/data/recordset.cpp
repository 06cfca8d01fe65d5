#include "data/recordset.h"

#include "data/database.h"
#include "data/engine.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/row_reader.h"

#include <algorithm>

namespace molven {

Recordset::Recordset(Workspace& workspace, const KeySelection& selection)
    : workspace_(&workspace), selection_(selection), keys_(selection) {}

void Recordset::requery() {
    pages_.clear();
    keys_ = Keys(selection_);
    moveTo(position_);
}

void Recordset::readWhole() const {
    if (keys_.readWhole()) pages_.clear();
}

Recordset::Iterator Recordset::begin() const {
    readWhole();
    return {this, 0};
}

void Recordset::moveTo(qint64 position) {
    if (position != position_) readWhole();
    position_ = std::clamp<qint64>(position, 0, count());
    draft_.reset();
}

bool Recordset::findFirst(const Criterion& criterion) {
    Statement& row = selection_.meeting(criterion).keys(KeySelection::Stretch{1});
    const Key key = row.next() ? row.integer(0) : Keys::None;
    row.finish();
    const auto found = key == Keys::None ? std::nullopt : keys_.placeOf(key);
    if (!found) return false;
    position_ = *found;
    draft_.reset();
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
    pagesRead_ = number == nextPage_ && number > 0 ? std::min(pagesRead_ * 2, MostPagesAhead) : 1;
    nextPage_ = number + pagesRead_;
    if (pages_.size() + pagesRead_ > PagesKept) pages_.clear();
    const qint64 first = number * PageSize;
    Page read = records(first, std::min(pagesRead_ * PageSize, count() - first));
    for (std::size_t from = 0; from < read.size(); from += PageSize) {
        const auto begin = read.begin() + static_cast<std::ptrdiff_t>(from);
        const auto end = begin + std::min<std::ptrdiff_t>(PageSize, read.end() - begin);
        pages_.insert(number + static_cast<qint64>(from) / PageSize,
                      Page(std::make_move_iterator(begin), std::make_move_iterator(end)));
    }
    return *pages_.constFind(number);
}

Recordset::Page Recordset::records(qint64 first, qint64 size) const {
    QHash<Key, qint64> places;
    for (qint64 i = 0; i < size; ++i) places.insert(keys_[first + i], i);
    Page read(static_cast<std::size_t>(size));
    for (qsizetype place = 0; place < selection_.tables.size(); ++place) {
        QStringList keys;
        for (const Key key : places.keys())
            if (key % selection_.tables.size() == place) keys.append(QString::number(selection_.keyInTable(key)));
        if (keys.isEmpty()) continue;
        Sql sql{engine().dialect()};
        const QString isWanted = sql.dialect.hasKey(keys, sql);
        Statement& rows = engine().run(QStringLiteral("select rowid,%1 from %2 where %3")
                                           .arg(table().columns(), selection_.tables[place], isWanted),
                                       sql.values);
        while (rows.next())
            read[static_cast<std::size_t>(places.value(selection_.keyOf(place, rows.integer(0))))] =
                RowReader::read(rows, table(), 1);
    }
    return read;
}

std::optional<Record> Recordset::fetch(Key key) const {
    Statement& row = engine().run(
        QStringLiteral("select %1 from %2 where rowid = ?").arg(table().columns(), selection_.tableOf(key)),
        {QString::number(selection_.keyInTable(key))});
    std::optional<Record> found;
    if (row.next()) found = RowReader::read(row, table(), 0);
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
    draft_.emplace(table());
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
        readWhole();
        const Record& written = draft();
        const QString& target = selection_.tables.first();
        const QString sql = RowReader::insertion(target, table(), engine().dialect());
        const auto done = Journal::write({*workspace_, engine(), target, table()}, sql, RowReader::values(written),
                                         [&](Journal& journal) { journal.added({written}); });
        keys_.append(selection_.keyOf(0, done.key()));
        forget(count() - 1);
        position_ = count() - 1;
    }
    draft_.reset();
}

void Recordset::writeChanges(const Record& before, const Record& written) {
    QList<Assignment> changes;
    for (const Field* field : table().fields())
        if (before.value(*field) != written.value(*field)) changes.append({*field, written.value(*field)});
    if (changes.isEmpty()) return;
    const Criterion asRead([&](Sql& sql) {
        QStringList same;
        for (const Field* field : table().fields())
            if (!table().keeps(*field) || before.value(*field) != written.value(*field))
                same.append(sql.dialect.same(*field, RowReader::bound(*field, before.value(*field)), sql));
        return same.join(QStringLiteral(" and "));
    });
    Transaction transaction(*workspace_, Engine::Scope::Change);
    const auto done = Journal::update({*workspace_, engine(), selection_.tableOf(currentKey()), table()},
                                      Journal::changesOf(changes), current(), asRead);
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
    const QString& target = selection_.tableOf(currentKey());
    Sql sql{engine().dialect()};
    const QString text = QStringLiteral("delete from ") + target + here.where(sql);
    Journal::write({*workspace_, engine(), target, table()}, text, sql.values,
                   [&](Journal& journal) { journal.removing(here); });
    if (!keys_.readWhole()) keys_.remove(position_);
    pages_.clear();
    draft_.reset();
}

Criterion Recordset::current() const {
    return Criterion([key = QString::number(selection_.keyInTable(currentKey()))](Sql& sql) {
        return QStringLiteral("rowid=") + sql.bind(key);
    });
}

} // namespace molven

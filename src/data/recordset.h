#pragma once

#include "data/criteria.h"
#include "data/progress.h"
#include "data/record.h"

#include <QHash>

#include <functional>
#include <optional>
#include <vector>

namespace molven {

class Engine;
class Statement;
class Workspace;
class Recordset;

/// What `records[field]` gives: reads the draft if there is one, else the current record; assigns to the draft.
template <class F>
class DraftCell {
public:
    DraftCell(Recordset& records, const F& field) : records_(records), field_(field) {}
    operator typename F::Value() const;
    DraftCell& operator=(const typename F::Value& value);

private:
    Recordset& records_;
    const F& field_;
};

/// The records of one selection. Keys are read when it opens, records by pages when they are looked at, so
/// that a million records open at once and cost memory only for what is seen.
class Recordset {
public:
    qint64 count() const { return static_cast<qint64>(keys_.size()); }
    bool isEmpty() const { return keys_.empty(); }

    bool eof() const { return position_ >= count(); }
    qint64 position() const { return position_; }
    void moveFirst() { moveTo(0); }
    void moveLast() { moveTo(count() - 1); }
    void moveNext() { moveTo(position_ + 1); }
    void movePrevious() { moveTo(position_ - 1); }
    void moveTo(qint64 position);
    /// Moves to the first record of the selection that also meets this; false, without moving, when none does.
    bool findFirst(const Criterion& criterion);

    /// The current record as last read. Throws DataError when there is none or it was deleted meanwhile.
    const Record& record() const;
    /// The record at a position, without moving.
    const Record& at(qint64 position) const;
    QString operator[](const Text& field) const { return record()[field]; }
    QString operator[](const Label& field) const { return record()[field]; }
    Decimal operator[](const Number& field) const { return record()[field]; }

    /// Walks the selection without moving: `for (const Record& unit : units)`. A record stays valid for its turn.
    class Iterator {
    public:
        Iterator(const Recordset* records, qint64 position) : records_(records), position_(position) {}
        const Record& operator*() const { return records_->at(position_); }
        Iterator& operator++() { return ++position_, *this; }
        bool operator!=(const Iterator& other) const { return position_ != other.position_; }

    private:
        const Recordset* records_;
        qint64 position_;
    };
    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, count()}; }

    /// Begins a change of the current record, read anew from the file.
    void edit();
    /// Begins a change of the current record as the user read it some time ago: update() refuses when it changed since.
    void edit(const Record& asRead);
    /// Begins a new record.
    void addNew();
    /// The record being changed or added.
    Record& draft();
    DraftCell<Text> operator[](const Text& field) { return {*this, field}; }
    DraftCell<Label> operator[](const Label& field) { return {*this, field}; }
    DraftCell<Number> operator[](const Number& field) { return {*this, field}; }
    /// Writes it: of a changed record, the fields that differ from what edit() began with. Throws DataError
    /// RecordChanged when another workstation changed the record since; a field that rules keep counts only when it is
    /// written here.
    void update();
    void cancelUpdate() { draft_.reset(); }
    /// Deletes the current record; the next one becomes current.
    void remove();

    /// Those of these records, in their order, of which one of the fields begins with the text. Only indexes are read:
    /// a field that none serves is not looked at. Read again, it is the whole selection.
    Recordset beginningWith(const QList<const Field*>& fields, const QString& text) const;
    /// Those of these records, in their order, that meet the criterion; nothing when it was stopped. Read again, it is
    /// the whole selection.
    std::optional<Recordset> meeting(const Criterion& criterion, const Progress& progress) const;

    /// Reads the selection again.
    void requery();
    Workspace& workspace() const { return *workspace_; }

private:
    friend class Database;
    template <class F>
    friend class DraftCell;
    Recordset(Workspace& workspace, Engine& engine, const QStringList& qualifiedTables, const Table& table,
              const Criterion& criterion, const Order& order);

    using Key = qint64;
    using Page = std::vector<std::optional<Record>>;
    static constexpr qint64 PageSize = 128;
    static constexpr qsizetype PagesKept = 64;

    /// Runs the statement that answers the keys of the selection, in order.
    Statement& keysOf(const Criterion& criterion, const QString& limit = {}) const;
    /// The table that a record of this key lies in.
    const QString& tableOf(Key key) const { return tables_[key < 0 ? 1 : 0]; }
    const Page& page(qint64 number) const;
    std::optional<Record> fetch(Key key) const;
    /// The records of these keys alone.
    Recordset reducedTo(const std::vector<Key>& kept) const;
    void readBeginnings(Key sign, const Field& field, const QString& text, std::vector<Key>& found) const;
    void writeChanges(const Record& before, const Record& written);
    Key currentKey() const { return keys_[static_cast<std::size_t>(position_)]; }
    /// The signs that keys bear: 1, and -1 where there is a second table.
    QList<Key> signs() const { return tables_.size() > 1 ? QList<Key>{1, -1} : QList<Key>{1}; }
    /// The condition that selects the current record in its table.
    Criterion current() const;
    void forget(qint64 position) { pages_.remove(position / PageSize); }

    Workspace* workspace_;
    Engine* engine_;
    QStringList tables_; ///< one, or a second whose keys are counted below zero
    const Table* table_;
    Criterion criterion_;
    Order order_;
    std::vector<Key> keys_;
    mutable QHash<qint64, Page> pages_;
    qint64 position_ = 0;
    std::optional<Record> draft_;
    std::optional<Record> before_; ///< the record as edit() found it; none while adding
};

template <class F>
DraftCell<F>::operator typename F::Value() const {
    const Record& source = records_.draft_ ? *records_.draft_ : records_.record();
    return source[field_];
}

template <class F>
DraftCell<F>& DraftCell<F>::operator=(const typename F::Value& value) {
    records_.draft().set(field_, value);
    return *this;
}

} // namespace molven

#pragma once

#include "data/keys.h"
#include "data/progress.h"
#include "data/record.h"

#include <QHash>

#include <functional>
#include <optional>
#include <vector>

namespace molven {

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
/// that a million records open at once and cost memory only for what is seen. On a server the keys of a large one are
/// read where it is looked at(), and all of them, as they are by then, when it is walked through.
class Recordset {
public:
    qint64 count() const { return keys_.count(); }
    bool isEmpty() const { return count() == 0; }

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
    Iterator begin() const;
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
    /// a field that none serves is not looked at. Not to be read again.
    Recordset beginningWith(const QList<const Field*>& fields, const QString& text) const;
    /// Those of these records, in their order, that meet the criterion; nothing when it was stopped. Not to be
    /// read again.
    std::optional<Recordset> meeting(const Criterion& criterion, const Progress& progress) const;

    /// Reads the selection again.
    void requery();
    Workspace& workspace() const { return *workspace_; }

private:
    friend class Database;
    template <class F>
    friend class DraftCell;
    Recordset(Workspace& workspace, const KeySelection& selection);

    using Key = KeySelection::Key;
    using Page = std::vector<std::optional<Record>>;
    static constexpr qint64 PageSize = 128;
    static constexpr qsizetype PagesKept = 64;
    static constexpr qint64 MostPagesAhead = 8; ///< read at once for whoever goes on from page to page

    const Page& page(qint64 number) const;
    /// So many records from one on, each nothing when it was deleted since.
    Page records(qint64 first, qint64 size) const;
    std::optional<Record> fetch(Key key) const;
    /// All keys at hand, as they are now; no page is any longer where it was.
    void readWhole() const;
    /// The keys of records of one table, selected or not, that meet the criterion.
    void collect(qsizetype place, const Criterion& criterion, std::optional<qint64> most,
                 std::vector<Key>& found) const;
    /// Those of the selection that meet the criterion, read slice by slice; false when it was stopped. From the keys
    /// at hand, or from the tables of a server.
    bool collectAtHand(const Criterion& criterion, const Progress& progress, std::vector<Key>& found) const;
    bool collectAfar(const Criterion& criterion, const Progress& progress, std::vector<Key>& found) const;
    /// Those of the selection that have one of these keys, which are all that meet the criterion.
    Recordset reducedTo(const std::vector<Key>& found, qint64 mostNamed, const Criterion& criterion) const;
    void writeChanges(const Record& before, const Record& written);
    Key currentKey() const { return keys_[position_]; }
    /// The condition that selects the current record in its table.
    Criterion current() const;
    Engine& engine() const { return *selection_.engine; }
    const Table& table() const { return *selection_.table; }
    void forget(qint64 position) { pages_.remove(position / PageSize); }

    Workspace* workspace_;
    KeySelection selection_;
    mutable Keys keys_;
    mutable QHash<qint64, Page> pages_;
    mutable qint64 pagesRead_ = 0; ///< at once, the last time
    mutable qint64 nextPage_ = 0;  ///< behind those
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

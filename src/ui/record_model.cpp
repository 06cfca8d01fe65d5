#include "ui/record_model.h"

#include "data/collation.h"
#include "data/errors.h"
#include "data/format.h"
#include "data/period.h"

#include <QScopeGuard>

#include <algorithm>

namespace molven {

RecordModel::RecordModel(const QList<GridColumn>& columns, QObject* parent)
    : QAbstractTableModel(parent), columns_(columns) {}

void RecordModel::setColumns(const QList<GridColumn>& columns) {
    beginResetModel();
    columns_ = columns;
    query_ = nullptr;
    whole_.reset();
    all_.clear();
    rows_ = QList<Record>();
    filter_.clear();
    sortColumn_ = -1;
    endResetModel();
}

void RecordModel::setQuery(Query query) {
    query_ = std::move(query);
    filter_.clear(); // it was typed for other records
    refresh();
}

void RecordModel::setRecords(const QList<Record>& records) {
    query_ = nullptr;
    filter_.clear();
    all_ = records;
    refresh();
}

void RecordModel::refresh() {
    whole_.reset();
    reread();
}

void RecordModel::reread() {
    beginResetModel();
    const auto after = qScopeGuard([this] { endResetModel(); });
    isSearchedThrough_ = false;
    rearrange();
    if (filter_.isEmpty()) unfilteredCount_ = rowCount();
}

void RecordModel::setFilter(const QString& text) {
    if (text == filter_) return;
    if (filter_.isEmpty() && isLarge() && query_) whole_ = std::get<Recordset>(rows_);
    filter_ = text;
    reread();
}

void RecordModel::searchThrough(const Progress& progress) {
    const auto found = whole_->meeting(filterCriterion(), progress);
    if (!found) return;
    beginResetModel();
    rows_ = *found;
    isSearchedThrough_ = true;
    endResetModel();
}

QString RecordModel::filterWords() const {
    if (filter_.isEmpty()) return {};
    return QStringLiteral("filtre : ") + filter_ +
           (showsBeginnings() ? QStringLiteral(" (débuts de codes)") : QString());
}

Criterion RecordModel::filterCriterion() const { return anyContains(columnFields(), filter_); }

QList<const Field*> RecordModel::columnFields() const {
    QList<const Field*> fields;
    for (const GridColumn& column : columns_) fields.append(column.field);
    return fields;
}

bool RecordModel::holds(const Record& record) const {
    return std::any_of(columns_.begin(), columns_.end(), [&](const GridColumn& column) {
        return folded(record.value(*column.field)).contains(folded(filter_));
    });
}

void RecordModel::rearrange() {
    if (query_) {
        Order order;
        if (sortColumn_ >= 0) {
            const Field& field = *columns_[sortColumn_].field;
            order = sortOrder_ == Qt::AscendingOrder ? Order(field) : Order::descending(field);
        }
        if (!whole_ && !filter_.isEmpty() && isLarge()) whole_ = query_({}, order);
        if (!whole_)
            rows_.emplace<Recordset>(query_(filterCriterion(), order));
        else if (filter_.isEmpty())
            rows_ = *whole_;
        else
            rows_ = whole_->beginningWith(columnFields(), filter_);
        if (filter_.isEmpty()) whole_.reset();
        return;
    }
    QList<Record> shown;
    for (const Record& record : all_)
        if (filter_.isEmpty() || holds(record)) shown.append(record);
    if (sortColumn_ >= 0) {
        const Field& field = *columns_[sortColumn_].field;
        const bool ascending = sortOrder_ == Qt::AscendingOrder;
        std::stable_sort(shown.begin(), shown.end(), [&](const Record& a, const Record& b) {
            const int order = collation::compare(field, a.value(field), b.value(field));
            return ascending ? order < 0 : order > 0;
        });
    }
    rows_ = shown;
}

std::optional<Record> RecordModel::record(int row) const {
    if (row < 0 || row >= rowCount()) return std::nullopt;
    if (const auto* list = std::get_if<QList<Record>>(&rows_)) return list->at(row);
    return std::get<Recordset>(rows_).at(row);
}

int RecordModel::rowOf(const Record& wanted, const QList<const Field*>& key) {
    if (auto* selected = std::get_if<Recordset>(&rows_)) {
        Criterion same;
        for (const Field* field : key) same = same && *field == wanted.value(*field);
        return selected->findFirst(same) ? static_cast<int>(selected->position()) : -1;
    }
    const auto& list = std::get<QList<Record>>(rows_);
    const auto found = std::find_if(list.begin(), list.end(), [&](const Record& record) {
        return std::all_of(key.begin(), key.end(), [&](const Field* field) {
            return record.value(*field).compare(wanted.value(*field), Qt::CaseInsensitive) == 0;
        });
    });
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

namespace {

QString cellOf(const Record& record, const GridColumn& column) {
    const QString value = record.value(*column.field);
    if (value.isEmpty()) return value;
    if (column.pattern == DayPattern) return dayOfKey(value);
    if (column.field->kind != Field::Kind::Number) return value;
    const Decimal number = Decimal::fromText(value);
    return column.pattern.isEmpty() ? shown(number) : format(number, column.pattern);
}

/// Null for one that was removed since its key was read.
const Record* stillThere(const Recordset::Iterator& place) {
    try {
        return &*place;
    } catch (const DataError& error) {
        if (error.number != DataError::RecordDeleted) throw;
        return nullptr;
    }
}

} // namespace

QString RecordModel::text(int row, int column) const {
    try {
        const auto shownRecord = record(row);
        return shownRecord ? cellOf(*shownRecord, columns_[column]) : QString();
    } catch (const DataError&) {
        return QStringLiteral("#Supprimé");
    }
}

void RecordModel::forEach(const std::function<void(const Record&)>& take) const {
    if (const auto* list = std::get_if<QList<Record>>(&rows_)) {
        for (const Record& record : *list) take(record);
        return;
    }
    const Recordset all = std::get<Recordset>(rows_); // read whole, while what is shown keeps its places
    for (auto place = all.begin(); place != all.end(); ++place)
        if (const Record* record = stillThere(place)) take(*record);
}

QStringList RecordModel::cells(const Record& record) const {
    QStringList texts;
    for (const GridColumn& column : columns_) texts.append(cellOf(record, column));
    return texts;
}

int RecordModel::columnOf(const QString& fieldName) const {
    for (int i = 0; i < columns_.size(); ++i)
        if (columns_[i].field->name.compare(fieldName, Qt::CaseInsensitive) == 0 ||
            columns_[i].title.compare(fieldName, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

int RecordModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    if (const auto* list = std::get_if<QList<Record>>(&rows_)) return static_cast<int>(list->size());
    return static_cast<int>(std::get<Recordset>(rows_).count());
}

int RecordModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

/// The part of a cell's mark that a view asks for; nothing where there is none.
QVariant RecordModel::marked(const QModelIndex& index, int role) const {
    try {
        const auto row = record(index.row());
        if (!row) return {};
        const CellMark mark = columns_[index.column()].mark(*row);
        if (mark.word.isEmpty()) return {};
        if (role == Qt::DisplayRole) return mark.word;
        if (role == Qt::ToolTipRole) return mark.tip;
        if (role == Qt::ForegroundRole) return style::colour(mark.tone);
        return style::dot(mark.tone);
    } catch (const DataError&) {
        return {};
    }
}

void RecordModel::showNames(bool shown) {
    if (shown == namesShown_) return;
    namesShown_ = shown;
    if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

/// What stands for a code; a record that is gone has none.
QString RecordModel::named(const QModelIndex& index) const {
    try {
        const auto row = record(index.row());
        return row ? nameOf(*columns_[index.column()].field, *row) : QString();
    } catch (const DataError&) {
        return {};
    }
}

namespace {

/// A number as it is read on the screen: "1 779,00".
QString inThousands(QString number) {
    auto end = number.indexOf(u',');
    if (end < 0) end = number.size();
    const qsizetype first = number.startsWith(u'-') ? 1 : 0;
    if (number.contains(QChar(u' '))) return number; // its pattern did it
    for (end -= 3; end > first; end -= 3) number.insert(end, QChar(u' '));
    return number;
}

} // namespace

QVariant RecordModel::data(const QModelIndex& index, int role) const {
    const bool ofMark =
        role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::ForegroundRole || role == Qt::DecorationRole;
    if (ofMark && columns_[index.column()].mark)
        if (const QVariant found = marked(index, role); found.isValid()) return found;
    if (role == Qt::DisplayRole && namesShown_)
        if (const QString name = named(index); !name.isEmpty()) return name;
    if (role == Qt::DisplayRole) {
        const QString shown = text(index.row(), index.column());
        return columns_[index.column()].field->kind == Field::Kind::Number ? inThousands(shown) : shown;
    }
    if (role == Qt::TextAlignmentRole && columns_[index.column()].field->kind == Field::Kind::Number)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::DisplayRole) return columns_[section].title;
    if (role == Qt::TextAlignmentRole && columns_[section].field->kind == Field::Kind::Number)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

void RecordModel::sort(int column, Qt::SortOrder order) {
    guard([&] {
        auto asBefore = qScopeGuard([this, column = sortColumn_, order = sortOrder_] {
            sortColumn_ = column;
            sortOrder_ = order;
        });
        sortColumn_ = column;
        sortOrder_ = order;
        refresh();
        asBefore.dismiss();
    });
}

Workspace* RecordModel::workspace() const {
    const auto* selected = std::get_if<Recordset>(&rows_);
    return selected ? &selected->workspace() : nullptr;
}

} // namespace molven

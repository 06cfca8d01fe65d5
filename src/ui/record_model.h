#pragma once

#include "data/database.h"
#include "ui/style.h"

#include <QAbstractTableModel>

#include <functional>
#include <variant>

namespace molven {

/// What a cell shows instead of its value: a word with its colour, and more in its tip.
struct CellMark {
    QString word;
    style::Tone tone;
    QString tip;
};

/// A column of a grid: a field and its title. Numbers are shown by their pattern.
struct GridColumn {
    const Field* field;
    QString title;
    int width = 100;                                  ///< pixels
    QString pattern = {};                             ///< "#####0.00"; empty shows the shortest form; see DayPattern
    std::function<CellMark(const Record&)> mark = {}; ///< shown for a value that only the program reads
};

/// The pattern of a day kept as "yyyymmdd", shown "dd/mm/yyyy".
inline const QString DayPattern = QStringLiteral("dd/mm/yyyy");

/// The rows of a grid: either a selection of the engine, read by pages, or records at hand.
class RecordModel : public QAbstractTableModel {
public:
    /// Selects the rows, given what the user filters and sorts by.
    using Query = std::function<Recordset(const Criterion& filter, const Order& order)>;

    explicit RecordModel(const QList<GridColumn>& columns, QObject* parent = nullptr);

    /// Runs what a click on a header asks for, where a fault of the engine can be shown and a long one stopped.
    std::function<void(const std::function<void()>&)> guard = [](const std::function<void()>& work) { work(); };
    /// The connection that selects the rows; none for records at hand.
    Workspace* workspace() const;

    void setQuery(Query query);
    void setRecords(const QList<Record>& records);
    void setColumns(const QList<GridColumn>& columns);
    /// Reads the rows again.
    void refresh();
    /// Keeps the rows that hold this text in a column; of a selection of many rows, those of which
    /// an indexed column begins with it, so that it answers while one types.
    void setFilter(const QString& text);
    void setSearchedThrough(int cells) { searchedThrough_ = cells; }
    /// True while a filter was compared with beginnings only.
    bool showsBeginnings() const { return whole_.has_value() && !filter_.isEmpty() && !isSearchedThrough_; }
    /// Looks for the filter everywhere in such a selection; the rows stay when it is stopped.
    void searchThrough(const Progress& progress);
    const QString& filter() const { return filter_; }
    /// What narrows the rows, for a paper or a file; empty without filter.
    QString filterWords() const;
    /// Shows the words behind the codes in their place; filter, sort, copy, export and print keep the code.
    void showNames(bool shown);
    bool showsNames() const { return namesShown_; }
    /// The words behind the code of a field, empty where it holds none.
    std::function<QString(const Field& field, const Record& row)> nameOf = [](const Field&, const Record&) {
        return QString();
    };
    /// How many rows there are without the filter, as last read.
    int unfilteredCount() const { return unfilteredCount_; }
    /// The row of the record that has the same values in these fields, -1 when none does.
    int rowOf(const Record& record, const QList<const Field*>& key);

    const QList<GridColumn>& columns() const { return columns_; }
    /// -1 for the order of the query.
    int sortColumn() const { return sortColumn_; }
    Qt::SortOrder sortOrder() const { return sortOrder_; }
    std::optional<Record> record(int row) const;
    QString text(int row, int column) const;
    /// Every record of the rows, for a paper or a file: as they are now, each once, whatever of a long list is shown.
    void forEach(const std::function<void(const Record&)>& take) const;
    /// What the cells of a record say.
    QStringList cells(const Record& record) const;
    int columnOf(const QString& fieldName) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    Criterion filterCriterion() const;
    QList<const Field*> columnFields() const;
    bool holds(const Record& record) const;
    QVariant marked(const QModelIndex& index, int role) const;
    QString named(const QModelIndex& index) const;
    bool isLarge() const { return unfilteredCount_ > searchedThrough_ / std::max<qsizetype>(1, columns_.size()); }
    void reread();
    void rearrange();

    QList<GridColumn> columns_;
    Query query_;
    QList<Record> all_;
    std::variant<QList<Record>, Recordset> rows_;
    QString filter_;
    int unfilteredCount_ = 0;
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    std::optional<Recordset> whole_; ///< the large selection of which a filter shows a part
    bool isSearchedThrough_ = false;
    bool namesShown_ = false;
    int searchedThrough_ = 250'000; ///< cells, up to which a filter is looked for everywhere
};

} // namespace molven

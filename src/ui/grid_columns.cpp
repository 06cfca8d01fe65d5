#include "ui/grid_columns.h"

#include "ui/grid.h"
#include "ui/habits.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStringList>

#include <algorithm>
#include <numeric>

namespace molven {

namespace {

constexpr int LooksAtRows = 40;     ///< for the width of a column
constexpr int Widest = 420;         ///< that contents make a column
constexpr int NarrowestWords = 100; ///< that a lack of room makes a column of words
constexpr int Padding = 14;

} // namespace

GridColumns::GridColumns(Grid& grid) : QObject(&grid), grid_(grid), header_(*grid.horizontalHeader()) {
    header_.setSectionsMovable(true);
    header_.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header_, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!working_) userResized(column, width);
    });
    connect(&header_, &QHeaderView::sectionMoved, this, [this] {
        if (!working_) keep();
    });
    connect(&header_, &QHeaderView::sortIndicatorChanged, this, [this](int column, Qt::SortOrder order) {
        if (!working_) keepSort(column, order);
    });
    connect(&header_, &QHeaderView::customContextMenuRequested, this, &GridColumns::openMenu);
}

void GridColumns::openMenu(const QPoint& place) {
    QMenu menu;
    QAction* names = menu.addAction(QStringLiteral("&Noms à la place des codes"), this, &GridColumns::showNames);
    names->setCheckable(true);
    names->setChecked(grid_.rows().showsNames());
    menu.addAction(QStringLiteral("&Colonnes d'origine"), this, [this] { restoreDefaults(); });
    menu.exec(header_.mapToGlobal(place));
}

void GridColumns::showNames(bool shown) {
    if (habits_) habits_->set(name_ + QStringLiteral("/noms"), shown);
    grid_.rows().showNames(shown);
    held_.clear();
    fit();
}

QString GridColumns::nameOf(int column) const { return grid_.rows().columns()[column].field->name; }

int GridColumns::columnNamed(const QString& name) const {
    const auto& columns = grid_.rows().columns();
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const GridColumn& column) { return column.field->name == name; });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

void GridColumns::begin(Habits* habits, const QString& name) {
    habits_ = habits;
    name_ = name;
    chosen_.clear();
    held_.clear();
    restore();
    fit();
}

/// Columns that this version has no more, or that are new, keep out of the way of those that were kept.
void GridColumns::restore() {
    const QScopedValueRollback working(working_, true);
    for (int i = 0; i < header_.count(); ++i) header_.moveSection(header_.visualIndex(i), i);
    header_.setSortIndicator(-1, Qt::AscendingOrder);
    grid_.rows().showNames(habits_ && habits_->value(name_ + QStringLiteral("/noms")).toBool());
    if (!habits_) return;
    int place = 0;
    for (const QString& kept : habits_->value(name_ + QStringLiteral("/colonnes")).toStringList()) {
        const int column = columnNamed(kept.section(u':', 0, 0));
        if (column < 0) continue;
        header_.moveSection(header_.visualIndex(column), place++);
        if (const int width = kept.section(u':', 1).toInt(); width > 0) chosen_.insert(nameOf(column), width);
    }
    const QString sorted = habits_->value(name_ + QStringLiteral("/tri")).toString();
    if (const int column = columnNamed(sorted.section(u':', 0, 0)); column >= 0)
        header_.setSortIndicator(column, sorted.endsWith(u'-') ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void GridColumns::restoreDefaults() {
    if (habits_) habits_->forget(name_);
    begin(habits_, name_);
}

void GridColumns::keep() {
    if (!habits_) return;
    QStringList columns;
    for (int place = 0; place < header_.count(); ++place) {
        const QString name = nameOf(header_.logicalIndex(place));
        columns.append(name + u':' + QString::number(chosen_.value(name)));
    }
    habits_->set(name_ + QStringLiteral("/colonnes"), columns);
}

void GridColumns::showSorted() {
    const RecordModel& rows = grid_.rows();
    if (header_.sortIndicatorSection() == rows.sortColumn() && header_.sortIndicatorOrder() == rows.sortOrder()) return;
    const QSignalBlocker quiet(header_);
    header_.setSortIndicator(rows.sortColumn(), rows.sortOrder());
    header_.viewport()->update();
}

void GridColumns::keepSort(int column, Qt::SortOrder order) {
    if (!habits_ || column < 0 || column >= header_.count()) return;
    const QString direction = order == Qt::AscendingOrder ? QStringLiteral(":+") : QStringLiteral(":-");
    habits_->set(name_ + QStringLiteral("/tri"), QString(nameOf(column) + direction));
}

void GridColumns::userResized(int column, int width) {
    chosen_.insert(nameOf(column), width);
    keep();
}

/// Columns of words give and take room; codes, dates and numbers stay whole.
bool GridColumns::yields(int column) const {
    const Field& field = *grid_.rows().columns()[column].field;
    const bool holdsWords = field.size > 20 || (field.code && grid_.rows().showsNames());
    return !chosen_.contains(field.name) && field.kind != Field::Kind::Number && holdsWords;
}

/// What the column needs for its title and the rows in sight; the described width while there are none.
int GridColumns::widthOf(int column) const {
    const RecordModel& model = grid_.rows();
    const int rows = std::min(model.rowCount(), LooksAtRows);
    int width = header_.sectionSizeHint(column);
    if (rows == 0) width = std::max(width, model.columns()[column].width);
    const QFontMetrics metrics(grid_.font());
    for (int row = 0; row < rows; ++row) {
        const QModelIndex cell = model.index(row, column);
        const bool marked = model.data(cell, Qt::DecorationRole).isValid();
        const int words = metrics.horizontalAdvance(model.data(cell, Qt::DisplayRole).toString());
        width = std::max(width, std::min(Widest, marked ? grid_.sizeHintForIndex(cell).width() : words + Padding));
    }
    return width;
}

/// Where no column holds words, what is left of the room falls to the last one that is no number.
void GridColumns::giveTheRest(QList<int>& widths, int spare) const {
    for (int place = header_.count() - 1; spare > 0 && place >= 0; --place) {
        const int column = header_.logicalIndex(place);
        const Field& field = *grid_.rows().columns()[column].field;
        if (widths[column] == 0 || chosen_.contains(field.name) || field.kind == Field::Kind::Number) continue;
        widths[column] += spare;
        return;
    }
}

/// Hands out what is left of the room, or takes back what is missing, among the columns of words; where the list has to
/// be pushed along all the same, its words stay whole.
void GridColumns::share(QList<int>& widths, int room) const {
    int spare = room - std::accumulate(widths.begin(), widths.end(), 0);
    int words = 0;
    for (int i = 0; i < widths.size(); ++i)
        if (yields(i) && widths[i] > 0) words += widths[i];
    int least = 0;
    for (int i = 0; i < widths.size(); ++i) least += yields(i) ? std::min(widths[i], NarrowestWords) : widths[i];
    if (words == 0) return giveTheRest(widths, spare);
    if (least > room) return;
    for (int i = 0; i < widths.size(); ++i) {
        if (!yields(i) || widths[i] == 0) continue;
        const int part = static_cast<int>(static_cast<qint64>(spare) * widths[i] / words);
        words -= widths[i];
        const int changed = std::max(widths[i] + part, std::min(widths[i], NarrowestWords));
        spare -= changed - widths[i];
        widths[i] = changed;
        if (words <= 0) break;
    }
}

void GridColumns::fit() {
    const auto& columns = grid_.rows().columns();
    if (header_.count() != columns.size()) return; // being exchanged
    QList<int> widths;
    for (int i = 0; i < columns.size(); ++i) {
        int& held = held_[nameOf(i)];
        const int width = widthOf(i);
        if (grid_.rows().rowCount() > 0) held = std::max(held, width);
        widths.append(grid_.isColumnHidden(i) ? 0 : chosen_.value(nameOf(i), std::max(held, width)));
    }
    share(widths, grid_.viewport()->width());
    const QScopedValueRollback working(working_, true);
    for (int i = 0; i < widths.size(); ++i)
        if (widths[i] > 0) header_.resizeSection(i, widths[i]);
}

} // namespace molven

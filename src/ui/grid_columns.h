#pragma once

#include <QHash>
#include <QObject>
#include <QString>

class QHeaderView;
class QPoint;

namespace molven {

class Grid;
class Habits;

/// The columns of a grid: as wide as what they hold, the words sharing the room that is left; or as the user left them,
/// their order and the sorted one too.
class GridColumns : public QObject {
public:
    explicit GridColumns(Grid& grid);

    /// Other columns stand in the grid: as the user left these, under a name of their own.
    void begin(Habits* habits, const QString& name);
    /// Gives the columns their widths, when rows were read or the grid changed its size.
    void fit();
    /// Columns as they are described.
    void restoreDefaults();
    /// The header tells by what the rows are sorted, which is not what was asked when that failed.
    void showSorted();
    /// Codes as their names, or as they are.
    void showNames(bool shown);

private:
    void restore();
    void keep();
    void keepSort(int column, Qt::SortOrder order);
    void openMenu(const QPoint& place);
    void userResized(int column, int width);
    void share(QList<int>& widths, int room) const;
    void giveTheRest(QList<int>& widths, int spare) const;
    bool yields(int column) const;
    int widthOf(int column) const;
    QString nameOf(int column) const;
    int columnNamed(const QString& name) const;

    Grid& grid_;
    QHeaderView& header_;
    Habits* habits_ = nullptr;
    QString name_;
    QHash<QString, int> chosen_; ///< widths set by the user, by field
    QHash<QString, int> held_;   ///< widest seen, by field: columns do not jump while one filters
    bool working_ = false;       ///< what the header tells is the program's own doing
};

} // namespace molven

#pragma once

#include "ui/record_model.h"

#include <QTableView>

#include <memory>

class QFrame;
class QLabel;

namespace molven {

class CodeNames;
class GridColumns;

/// A list of records. A clicked header sorts, a dragged one moves or widens its column, and stays so; typing filters
/// (Backspace takes back, Escape clears) and shows the filter below the rows; Ctrl+C copies the chosen rows, Ctrl+E
/// exports what is shown as CSV; the menu of the headers shows codes as their names. Return or a double click chooses.
/// The current row is the record that the screen shows and acts upon, however it became current.
class Grid : public QTableView {
public:
    Grid(const QString& name, const QList<GridColumn>& columns, QWidget* parent);
    ~Grid() override;

    RecordModel& rows() { return *model_; }
    CodeNames& names() { return *names_; }
    /// Other columns; the user's habits with them are kept under a name of their own, else under the grid's.
    void setColumns(const QList<GridColumn>& columns, const QString& habit = {});

    /// Columns as they are described, whatever the user did with them.
    void restoreColumns();
    /// Codes as their names, or as they are; the user's habit from then on.
    void showNames(bool shown);

    std::optional<Record> current() const;
    void selectRow(int row);
    /// Makes the row of that record current without telling becameCurrent: the screen shows it already. No row is
    /// current when none has these key values.
    void followRecord(const Record& record, const QList<const Field*>& key);
    /// Says that typing filters.
    void startFilter();
    /// The rows as semicolon-separated text with a header line.
    QString csv() const;
    /// Asks for a file and writes them there.
    void exportCsv();

    std::function<void(const Record&)> chosen;        ///< Return or double click
    std::function<void(const Record&)> becameCurrent; ///< by a click (again, too), a key, a filter or the program
    std::function<void()> exportWanted;               ///< Ctrl+E, where the screen exports more than is shown
    std::function<void()> rowsChanged;                ///< read anew, sorted or filtered

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void updateGeometries() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Runs what the user asked of the list, in the care of the form it lies in.
    void guarded(const std::function<void()>& work);
    void choose();
    void tellCurrent();
    void buildFilterStrip();
    void showFilter();
    void beginColumns(const QString& habit);
    void copySelection() const;
    void setFilter(const QString& text);
    void searchThrough();

    RecordModel* model_;
    std::unique_ptr<CodeNames> names_;
    GridColumns* columns_ = nullptr;
    QFrame* filterStrip_ = nullptr;
    QLabel* filterText_ = nullptr;
    int pressedOver_ = -1; ///< row that was current when the mouse went down
    bool following_ = false;
    bool settingMargins_ = false;
};

} // namespace molven

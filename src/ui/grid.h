#pragma once

#include "ui/record_model.h"

#include <QTableView>

namespace molven {

/// A list of records. A clicked header sorts, typing filters (Backspace takes back), Ctrl+C copies the chosen
/// rows, Ctrl+E exports what is shown as CSV; Return or a double click chooses.
class Grid : public QTableView {
public:
    Grid(const QString& name, const QList<GridColumn>& columns, QWidget* parent);

    RecordModel& rows() { return *model_; }
    void setColumns(const QList<GridColumn>& columns);

    std::optional<Record> current() const;
    void selectRow(int row);
    /// The rows as semicolon-separated text with a header line.
    QString csv() const;
    /// Asks for a file and writes them there.
    void exportCsv();

    std::function<void(const Record&)> chosen;     ///< Return or double click
    std::function<void(const Record&)> clickedRow; ///< the current row changed by a click
    std::function<void(const QString&)> filtered;  ///< the filter text changed

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Runs what the user asked of the list, in the care of the form it lies in.
    void guarded(const std::function<void()>& work);
    void choose();
    void applyWidths();
    void copySelection() const;
    void setFilter(const QString& text);

    RecordModel* model_;
};

} // namespace molven

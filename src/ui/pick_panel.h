#pragma once

#include "ui/grid.h"

#include <QFrame>
#include <QPointer>

class QLabel;

namespace molven {

/// A list to choose from: its title, columns, rows, and what to do with the chosen record.
struct PickList {
    QString title;
    QList<GridColumn> columns;
    RecordModel::Query query;
    std::function<void(const Record&)> chosen;
    QList<Record> records = {}; ///< the rows, where there is no query
};

/// The list a form shows over itself, behind its code fields. Grid `DBGrid2`.
class PickPanel : public QFrame {
public:
    explicit PickPanel(QWidget* form);

    void open(const PickList& list);
    /// Closes it without a choice.
    void leave();
    /// Keeps its place in the middle of the form.
    void settle();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    int rowOfTyped() const;
    void showCount();

    QLabel* title_;
    QLabel* hint_;
    Grid* grid_;
    QPointer<QWidget> back_;
};

} // namespace molven

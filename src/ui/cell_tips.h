#pragma once

#include <QObject>

class QModelIndex;

namespace molven {

class Grid;

/// What a grid tells of the cell under the mouse: the words behind a code, or the whole of a text that is cut.
class CellTips : public QObject {
public:
    explicit CellTips(Grid& grid);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString tipOf(const QModelIndex& cell) const;
    QString wordsBehind(const QModelIndex& cell) const;

    Grid& grid_;
};

} // namespace molven

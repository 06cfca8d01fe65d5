#include "ui/cell_tips.h"

#include "data/errors.h"
#include "ui/code_names.h"
#include "ui/grid.h"

#include <QHelpEvent>
#include <QToolTip>

namespace molven {

CellTips::CellTips(Grid& grid) : QObject(&grid), grid_(grid) { grid.viewport()->installEventFilter(this); }

bool CellTips::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::ToolTip) return false;
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex cell = grid_.indexAt(help->pos());
    if (!cell.isValid() || cell.data(Qt::ToolTipRole).isValid()) return false; // a cell that has a tip of its own
    const QString tip = tipOf(cell);
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tip, grid_.viewport(), grid_.visualRect(cell));
    return true;
}

QString CellTips::tipOf(const QModelIndex& cell) const {
    if (const QString words = wordsBehind(cell); !words.isEmpty()) return words;
    const QString text = cell.data().toString();
    const int room = grid_.visualRect(cell).width() - 8;
    return grid_.fontMetrics().horizontalAdvance(text) > room ? text : QString();
}

/// Where the name stands in the cell, the code too.
QString CellTips::wordsBehind(const QModelIndex& cell) const {
    const Field& field = *grid_.rows().columns()[cell.column()].field;
    try {
        const auto row = grid_.rows().record(cell.row());
        const QString words = row ? grid_.names().of(field, *row) : QString();
        const bool isNamed = !words.isEmpty() && grid_.rows().showsNames();
        return isNamed ? row->value(field) + QStringLiteral("  ") + words : words;
    } catch (const DataError&) {
        return {};
    }
}

} // namespace molven

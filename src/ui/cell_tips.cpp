#include "ui/cell_tips.h"

#include "data/database.h"
#include "data/errors.h"
#include "reference/codes.h"
#include "ui/form.h"
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

/// A tip is worth no message: where the codes cannot be read, there is none.
QString CellTips::wordsBehind(const QModelIndex& cell) const {
    const Field& field = *grid_.rows().columns()[cell.column()].field;
    auto* form = dynamic_cast<Form*>(grid_.window());
    try {
        const auto row = grid_.rows().record(cell.row());
        const CodeKind* kind = form && row ? codes::kindOf(field, *row) : nullptr;
        if (!kind || kind->key == &field) return {};
        const QString code = row->value(field);
        if (!kind->table) return kind->meanings.value(kind->letters.indexOf(code));
        Workspace workspace;
        return codes::words(workspace.open(form->session().path(kind->file)), field, *kind, code);
    } catch (const DataError&) {
        return {};
    }
}

} // namespace molven

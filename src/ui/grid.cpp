#include "ui/grid.h"

#include "data/csv.h"
#include "ui/form.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSaveFile>

namespace molven {

Grid::Grid(const QString& name, const QList<GridColumn>& columns, QWidget* parent)
    : QTableView(parent), model_(new RecordModel(columns, this)) {
    setObjectName(name);
    setModel(model_);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setShowGrid(false);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder); // the order of the query, until a header is clicked
    setSortingEnabled(true);
    setTabKeyNavigation(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setVisible(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(24);
    applyWidths();
    model_->guard = [this](const std::function<void()>& work) { guarded(work); };
    connect(this, &QTableView::doubleClicked, this, [this] { choose(); });
    connect(this, &QTableView::clicked, this, [this] {
        guarded([this] {
            const auto row = current();
            if (row && clickedRow) clickedRow(*row);
        });
    });
}

void Grid::guarded(const std::function<void()>& work) {
    if (auto* form = dynamic_cast<Form*>(window()))
        form->guarded(work);
    else
        work();
}

void Grid::setColumns(const QList<GridColumn>& columns) {
    model_->setColumns(columns);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    applyWidths();
}

void Grid::applyWidths() {
    for (int i = 0; i < model_->columns().size(); ++i) setColumnWidth(i, model_->columns()[i].width);
}

std::optional<Record> Grid::current() const { return model_->record(currentIndex().row()); }

void Grid::selectRow(int row) {
    setCurrentIndex(model_->index(row, 0));
    scrollTo(model_->index(row, 0));
}

void Grid::choose() {
    guarded([this] {
        const auto row = current();
        if (row && chosen) chosen(*row);
    });
}

void Grid::setFilter(const QString& text) {
    guarded([&] {
        model_->setFilter(text);
        if (model_->rowCount() > 0) selectRow(0);
        if (filtered) filtered(text);
    });
}

QString Grid::csv() const {
    QStringList titles;
    for (const GridColumn& column : model_->columns()) titles.append(column.title);
    QString lines = molven::csv::line(titles);
    for (int row = 0; row < model_->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model_->columnCount(); ++column) cells.append(model_->text(row, column));
        lines += molven::csv::line(cells);
    }
    return lines;
}

void Grid::copySelection() const {
    QStringList lines;
    for (const QModelIndex& index : selectionModel()->selectedRows()) {
        QStringList cells;
        for (int column = 0; column < model_->columnCount(); ++column) cells.append(model_->text(index.row(), column));
        lines.append(cells.join(u'\t'));
    }
    QApplication::clipboard()->setText(lines.join(u'\n'));
}

void Grid::exportCsv() {
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Exporter la liste"), QString(),
                                                      QStringLiteral("Fichiers CSV (*.csv)"));
    if (path.isEmpty()) return;
    guarded([&] {
        QSaveFile file(path);
        const QByteArray bytes = molven::csv::file(csv());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
            throw Refusal(QStringLiteral("Impossible d'écrire le fichier %1 : %2").arg(path, file.errorString()));
    });
}

void Grid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return copySelection();
    if (event->key() == Qt::Key_E && event->modifiers() == Qt::ControlModifier) return exportCsv();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (chosen && current()) return choose();
        return event->ignore();
    }
    if (event->key() == Qt::Key_Escape && !model_->filter().isEmpty()) return setFilter({});
    if (event->key() == Qt::Key_Backspace)
        return setFilter(model_->filter().chopped(std::min<qsizetype>(1, model_->filter().size())));
    const QString typed = event->text();
    if (!typed.isEmpty() && typed.front().isPrint() && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        return setFilter(model_->filter() + typed);
    QTableView::keyPressEvent(event);
}

} // namespace molven

#include "ui/grid.h"

#include "data/csv.h"
#include "data/safe_file.h"
#include "ui/cell_tips.h"
#include "ui/code_names.h"
#include "ui/form.h"
#include "ui/grid_columns.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

namespace molven {

Grid::Grid(const QString& name, const QList<GridColumn>& columns, QWidget* parent)
    : QTableView(parent), model_(new RecordModel(columns, this)), names_(std::make_unique<CodeNames>(*this)) {
    setObjectName(name);
    setModel(model_);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection); // the marked row is the record that deeds act upon
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setShowGrid(false);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder); // the order of the query, until a header is clicked
    setSortingEnabled(true);
    setTabKeyNavigation(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setVisible(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(style::RowHeight);
    columns_ = new GridColumns(*this);
    new CellTips(*this); // goes with the grid
    model_->nameOf = [this](const Field& field, const Record& row) { return names_->of(field, row); };
    model_->guard = [this](const std::function<void()>& work) {
        guarded([&] {
            Workspace* engine = model_->workspace();
            engine ? patiently(*this, *engine, QStringLiteral("Tri de la liste"), work) : work();
        });
        columns_->showSorted();
    };
    connect(this, &QTableView::doubleClicked, this, [this] { choose(); });
    connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (index.row() == pressedOver_) tellCurrent(); // the others were told when they became current
    });
    connect(model_, &RecordModel::modelReset, this, [this] {
        names_->forget();
        showFilter();
        columns_->fit();
        if (rowsChanged) guarded(rowsChanged);
    });
    buildFilterStrip();
    beginColumns({});
}

Grid::~Grid() = default;

void Grid::buildFilterStrip() {
    filterStrip_ = new QFrame(this);
    filterStrip_->setAutoFillBackground(true);
    filterText_ = new QLabel(filterStrip_);
    filterText_->setObjectName(QStringLiteral("Lblfiltre"));
    filterText_->setTextFormat(Qt::PlainText);
    auto* clear = new QToolButton(filterStrip_);
    clear->setText(QStringLiteral("Effacer le filtre"));
    clear->setFocusPolicy(Qt::NoFocus);
    connect(clear, &QToolButton::clicked, this, [this] { setFilter({}); });
    auto* line = new QHBoxLayout(filterStrip_);
    style::nest(*line);
    line->addWidget(filterText_, 1);
    line->addWidget(clear);
    filterStrip_->hide();
}

/// What is typed to filter by stands below the rows, with what it leaves of them.
void Grid::showFilter() {
    const bool filtered = !model_->filter().isEmpty();
    if (filtered)
        filterText_->setText(
            QStringLiteral("Filtre : %1     %2 sur %3     %4Échap : effacer")
                .arg(model_->filter())
                .arg(model_->rowCount())
                .arg(model_->unfilteredCount())
                .arg(model_->showsBeginnings() ? QStringLiteral("débuts de codes, F3 : partout     ") : QString()));
    filterStrip_->setVisible(filtered);
    updateGeometries();
}

void Grid::startFilter() {
    setFocus(Qt::ShortcutFocusReason);
    if (!model_->filter().isEmpty()) return;
    filterText_->setText(QStringLiteral("Filtre : tapez ce que vous cherchez     Échap : fermer"));
    filterStrip_->show();
    updateGeometries();
}

void Grid::updateGeometries() {
    if (settingMargins_) return;
    QTableView::updateGeometries();
    if (!filterStrip_ || filterStrip_->isHidden()) return;
    settingMargins_ = true;
    const int height = filterStrip_->sizeHint().height();
    setViewportMargins(0, horizontalHeader()->height(), 0, height);
    settingMargins_ = false;
    const QRect rows = viewport()->geometry();
    filterStrip_->setGeometry(rows.left(), rows.bottom() + 1, rows.width(), height);
}

void Grid::tellCurrent() {
    guarded([this] {
        const auto row = current();
        if (row && becameCurrent) becameCurrent(*row);
    });
}

void Grid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (!following_ && current.isValid() && current.row() != previous.row()) tellCurrent();
}

/// The toolkit would make the first row current: a box typed into just before must not give way to it.
void Grid::focusInEvent(QFocusEvent* event) {
    const bool hadCurrent = currentIndex().isValid();
    following_ = true;
    QTableView::focusInEvent(event);
    if (!hadCurrent) selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate); // what is chosen stays
    following_ = false;
    update(); // the edge shows the focus
}

void Grid::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    update();
}

void Grid::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    columns_->fit();
}

void Grid::mousePressEvent(QMouseEvent* event) {
    pressedOver_ = currentIndex().row();
    QTableView::mousePressEvent(event);
}

void Grid::followRecord(const Record& record, const QList<const Field*>& key) {
    const int row = model_->rowOf(record, key);
    following_ = true;
    if (row >= 0)
        selectRow(row);
    else
        setCurrentIndex({});
    following_ = false;
}

void Grid::guarded(const std::function<void()>& work) {
    if (auto* form = Form::of(this))
        form->guarded(work);
    else
        work();
}

void Grid::setColumns(const QList<GridColumn>& columns, const QString& habit) {
    model_->setColumns(columns);
    beginColumns(habit);
}

void Grid::beginColumns(const QString& habit) {
    auto* form = Form::of(this);
    const QString name = form && habit.isEmpty() ? form->habit() + u'/' + objectName() : habit;
    columns_->begin(form ? &form->desk().habits : nullptr, name);
}

void Grid::restoreColumns() { columns_->restoreDefaults(); }

void Grid::showNames(bool shown) { columns_->showNames(shown); }

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

void Grid::searchThrough() {
    guarded([this] {
        model_->searchThrough(progress(*this, QStringLiteral("Recherche de : ") + model_->filter()));
        if (model_->rowCount() > 0) selectRow(0);
    });
}

void Grid::setFilter(const QString& text) {
    guarded([&] {
        model_->setFilter(text);
        if (model_->rowCount() > 0) selectRow(0);
    });
}

namespace {

QString csvOf(const RecordModel& rows, const Progress& told) {
    QStringList titles;
    for (const GridColumn& column : rows.columns()) titles.append(column.title);
    QString lines = csv::line(titles);
    int written = 0;
    rows.forEach([&](const Record& record) {
        if (!told(written++, rows.rowCount())) throw Refusal(QStringLiteral("Opération abandonnée"));
        lines += csv::line(rows.cells(record));
    });
    if (!rows.filter().isEmpty()) lines += csv::line({rows.filterWords()});
    return lines;
}

} // namespace

QString Grid::csv() const {
    return csvOf(*model_, [](int, int) { return true; });
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
        const QString lines = csvOf(*model_, progress(*this, QStringLiteral("Export de la liste")));
        writeWhole(path, molven::csv::file(lines));
    });
}

void Grid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return copySelection();
    if (event->key() == Qt::Key_F3 && model_->showsBeginnings()) return searchThrough();
    if (event->key() == Qt::Key_E && event->modifiers() == Qt::ControlModifier)
        return exportWanted ? exportWanted() : exportCsv();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (chosen && current()) return choose();
        return event->ignore();
    }
    if (event->key() == Qt::Key_Escape && !model_->filter().isEmpty()) return setFilter({});
    if (event->key() == Qt::Key_Escape && filterStrip_->isVisible()) return showFilter();
    if (event->key() == Qt::Key_Backspace)
        return setFilter(model_->filter().chopped(std::min<qsizetype>(1, model_->filter().size())));
    const QString typed = event->text();
    if (!typed.isEmpty() && typed.front().isPrint() && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        return setFilter(model_->filter() + typed);
    QTableView::keyPressEvent(event);
}

} // namespace molven

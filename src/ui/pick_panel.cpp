#include "ui/pick_panel.h"

#include "data/format.h"
#include "ui/form.h"
#include "ui/style.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace molven {

PickPanel::PickPanel(QWidget* form)
    : QFrame(form),
      title_(new QLabel(this)),
      hint_(new QLabel(this)),
      grid_(new Grid(QStringLiteral("DBGrid2"), {}, this)) {
    setObjectName(QStringLiteral("FrameListe"));
    setFrameShape(StyledPanel);
    setFrameShadow(Raised);
    setAutoFillBackground(true);
    style::makeHeading(*title_);
    style::makeQuiet(*hint_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title_);
    layout->addWidget(grid_);
    layout->addWidget(hint_);
    grid_->rowsChanged = [this] { showCount(); };
    hide();
}

namespace {

/// Every list of these columns is the same to its user, on whichever screen it opens.
QString habitOf(const QList<GridColumn>& columns) {
    QStringList names;
    for (const GridColumn& column : columns) names.append(column.field->name);
    return QStringLiteral("listes/") + names.join(u'+');
}

} // namespace

void PickPanel::open(const PickList& list) {
    if (!isVisible()) back_ = parentWidget()->focusWidget();
    title_->setText(list.title);
    grid_->setAccessibleName(list.title);
    grid_->setColumns(list.columns, habitOf(list.columns));
    if (list.query)
        grid_->rows().setQuery(list.query);
    else
        grid_->rows().setRecords(list.records);
    grid_->chosen = [this, chosen = list.chosen](const Record& record) {
        const Record kept = record;
        leave();
        chosen(kept);
    };
    settle();
    show();
    raise();
    if (grid_->rows().rowCount() > 0) grid_->selectRow(rowOfTyped());
    grid_->setFocus();
}

/// The row of the code that stands in the box behind which the list opens, the first row without one.
int PickPanel::rowOfTyped() const {
    const auto* box = qobject_cast<const QLineEdit*>(back_.data());
    if (!box || box->text().trimmed().isEmpty()) return 0;
    const Field* code = grid_->rows().columns().first().field;
    Record wanted = *grid_->rows().record(0);
    wanted.set(*code, box->text().trimmed());
    return std::max(0, grid_->rows().rowOf(wanted, {code}));
}

void PickPanel::showCount() {
    hint_->setText(counted(grid_->rows().rowCount(), QStringLiteral("ligne")) +
                   QStringLiteral(" - tapez pour filtrer, Entrée choisit, Échap ferme"));
}

void PickPanel::settle() {
    const QSize room = parentWidget()->size();
    const QSize size(std::min(720, room.width() - 40), std::min(440, room.height() - 40));
    setGeometry(QRect(QPoint((room.width() - size.width()) / 2, (room.height() - size.height()) / 2), size));
}

void PickPanel::leave() {
    hide();
    if (back_) back_->setFocus(Qt::OtherFocusReason);
}

void PickPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return leave();
    QFrame::keyPressEvent(event);
}

} // namespace molven

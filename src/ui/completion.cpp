#include "ui/completion.h"

#include "ui/edit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>

#include <algorithm>

namespace molven {

namespace {

/// A scanner types on without such a pause: nothing is looked for behind its back.
constexpr int RestMs = 25;

} // namespace

Completion::Completion(Edit* box, const Search& search) : QObject(box), box_(box), search_(search) {
    box->installEventFilter(this);
    typed_.setSingleShot(true);
    connect(&typed_, &QTimer::timeout, this, [this] { offer(); });
    connect(box, &QLineEdit::textEdited, this, [this] { typed_.start(RestMs); });
}

void Completion::offer() {
    if (QApplication::activeModalWidget()) return close(); // the engine may be in the middle of something
    const QString text = box_->text().trimmed();
    const QList<Line> lines = text.isEmpty() || !box_->hasFocus() ? QList<Line>() : search_(text);
    const bool isTyped = lines.size() == 1 && lines.first().code == text;
    if (lines.isEmpty() || isTyped) return close();
    if (!list_) {
        list_ = new QListWidget(box_->window());
        list_->setObjectName(QStringLiteral("LstChoix"));
        list_->setFocusPolicy(Qt::NoFocus);
        list_->setAccessibleName(QStringLiteral("Codes proposés"));
        list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        connect(list_, &QListWidget::itemClicked, this, [this] { choose(); });
    }
    list_->clear();
    for (const Line& line : lines) {
        auto* item =
            new QListWidgetItem(line.words.isEmpty() ? line.code : line.code + QStringLiteral("   ") + line.words);
        item->setData(Qt::UserRole, line.code);
        list_->addItem(item);
    }
    list_->setCurrentRow(-1);
    place();
    list_->show();
    list_->raise();
}

/// Below the box, or above it where the window ends; inside the window in any case.
void Completion::place() {
    const QWidget* window = box_->window();
    const int high = list_->sizeHintForRow(0) * list_->count() + 2 * list_->frameWidth();
    const int wide = std::clamp(list_->sizeHintForColumn(0) + 2 * list_->frameWidth() + 12, box_->width(), 480);
    const QPoint below = box_->mapTo(window, box_->rect().bottomLeft());
    const int top = below.y() + high < window->height() ? below.y() : below.y() - box_->height() - high;
    list_->setGeometry(std::max(0, std::min(below.x(), window->width() - wide)), std::max(0, top), wide, high);
}

void Completion::close() {
    typed_.stop();
    if (list_) list_->hide();
}

void Completion::choose() {
    const QString code = list_->currentItem()->data(Qt::UserRole).toString();
    close();
    box_->setText(code);
    box_->leave();
}

/// True for a key that the open list takes.
bool Completion::takesKey(int key) {
    const int row = list_->currentRow();
    switch (key) {
    case Qt::Key_Down:
        list_->setCurrentRow(std::min(row + 1, list_->count() - 1));
        return true;
    case Qt::Key_Up:
        list_->setCurrentRow(std::max(row - 1, -1));
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        row >= 0 ? choose() : close();
        return row >= 0;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}

bool Completion::eventFilter(QObject*, QEvent* event) {
    const bool isOpen = list_ && list_->isVisible();
    if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide) close();
    if (event->type() != QEvent::KeyPress) return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (!isOpen) {
        if (key == Qt::Key_Return || key == Qt::Key_Enter) close(); // what was typed is taken as it is
        return false;
    }
    if (key == Qt::Key_F2) close(); // the whole list opens
    return takesKey(key);
}

} // namespace molven

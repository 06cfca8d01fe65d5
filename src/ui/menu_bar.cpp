#include "ui/menu_bar.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QShortcutEvent>

namespace molven {

namespace {

QString accessKey(const QAction* action) {
    const QKeySequence sequence = QKeySequence::mnemonic(action->text());
    return sequence.isEmpty() ? QString() : QKeySequence(sequence[0].key()).toString();
}

} // namespace

bool MenuBar::walk(const QString& key) {
    QList<QAction*> shown, sharing;
    for (QAction* action : actions()) {
        if (!action->isVisible() || !action->isEnabled() || action->isSeparator()) continue;
        shown.append(action);
        if (accessKey(action) == key) sharing.append(action);
    }
    if (sharing.size() < 2) return false;
    QAction* next = sharing[(sharing.indexOf(activeAction()) + 1) % sharing.size()];
    // The arrow keys are the toolkit's way to highlight a caption without opening it.
    setFocus(Qt::MenuBarFocusReason);
    for (qsizetype steps = 0; activeAction() != next && steps <= shown.size(); ++steps) {
        QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
        QMenuBar::keyPressEvent(&right);
    }
    return true;
}

bool MenuBar::event(QEvent* event) {
    if (event->type() == QEvent::Shortcut) {
        const QKeySequence pressed = static_cast<QShortcutEvent*>(event)->key();
        if (!pressed.isEmpty() && walk(QKeySequence(pressed[0].key()).toString())) return true;
    }
    return QMenuBar::event(event);
}

void MenuBar::keyPressEvent(QKeyEvent* event) {
    const bool letter = event->text().size() == 1 && event->text().front().isLetter();
    if (letter && walk(QKeySequence(event->key()).toString())) return;
    QMenuBar::keyPressEvent(event);
}

} // namespace molven

#include "ui/menu_bar.h"

#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QShortcutEvent>
#include <QStyleOptionMenuItem>

namespace molven {

namespace {

QString accessKey(const QAction* action) {
    const QKeySequence sequence = QKeySequence::mnemonic(action->text());
    return sequence.isEmpty() ? QString() : QKeySequence(sequence[0].key()).toString();
}

} // namespace

bool MenuBar::walk(const QString& key) {
    QList<QAction*> sharing;
    for (QAction* action : actions())
        if (action->isVisible() && action->isEnabled() && accessKey(action) == key) sharing.append(action);
    if (sharing.size() < 2) return false;
    QAction* next = sharing[(sharing.indexOf(activeAction()) + 1) % sharing.size()];
    setFocus(Qt::MenuBarFocusReason);
    // A pointer that passes over a caption is the toolkit's way to highlight it without opening it.
    const QPointF over = actionGeometry(next).center();
    QMouseEvent passing(QEvent::MouseMove, over, mapToGlobal(over), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QMenuBar::mouseMoveEvent(&passing);
    return true;
}

void MenuBar::leaveKeys(const QSet<QChar>& keys) {
    left_ = keys;
    if (!hasFocus()) showCaptions(left_);
}

void MenuBar::showCaptions(const QSet<QChar>& without) {
    for (QAction* action : actions()) {
        const QString own = captions_.value(action, action->text());
        captions_.insert(action, own);
        const QString key = QKeySequence::mnemonic(own).toString(); // "Alt+V"
        action->setText(!key.isEmpty() && without.contains(key.back()) ? QString(own).remove(u'&') : own);
    }
}

void MenuBar::focusInEvent(QFocusEvent* event) {
    QMenuBar::focusInEvent(event);
    showCaptions({});
}

void MenuBar::focusOutEvent(QFocusEvent* event) {
    QMenuBar::focusOutEvent(event);
    showCaptions(left_);
}

bool MenuBar::event(QEvent* event) {
    if (event->type() == QEvent::Shortcut) {
        const QKeySequence pressed = static_cast<QShortcutEvent*>(event)->key();
        if (!pressed.isEmpty() && walk(QKeySequence(pressed[0].key()).toString())) return true;
    }
    return QMenuBar::event(event);
}

/// The caption that Return opens looks pressed: styles show no other that it is the current one.
void MenuBar::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
    QMenuBar::initStyleOption(option, action);
    if (action && action == activeAction()) option->state |= QStyle::State_Sunken;
}

void MenuBar::keyPressEvent(QKeyEvent* event) {
    const bool letter = event->text().size() == 1 && event->text().front().isLetter();
    if (letter && walk(QKeySequence(event->key()).toString())) return;
    QMenuBar::keyPressEvent(event);
}

} // namespace molven

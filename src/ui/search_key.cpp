#include "ui/search_key.h"

#include "ui/form.h"

#include <QApplication>
#include <QKeyEvent>

namespace molven {

SearchKey::SearchKey(Desk& desk) : desk_(desk) { QApplication::instance()->installEventFilter(this); }

bool SearchKey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_K || key->modifiers() != Qt::ControlModifier) return false;
    if (QApplication::activeModalWidget() || !Form::of(static_cast<QWidget*>(watched))) return false;
    desk_.searchWanted();
    return true;
}

} // namespace molven

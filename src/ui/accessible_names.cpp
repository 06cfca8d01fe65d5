#include "ui/accessible_names.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QToolButton>

namespace molven {

namespace {

bool isNamed(QWidget* control) {
    const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(control);
    return !face || !face->text(QAccessible::Name).trimmed().isEmpty();
}

bool isBox(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QAbstractItemView*>(widget);
}

QString plain(QString caption) { return caption.remove(u'&').remove(u':').simplified(); }

/// Walks a layout as one reads it, the last caption in mind.
void walk(const QLayout& layout, QString& caption) {
    for (int i = 0; i < layout.count(); ++i) {
        QWidget* widget = layout.itemAt(i)->widget();
        if (const QLayout* inner = layout.itemAt(i)->layout()) walk(*inner, caption);
        if (!widget) continue;
        if (const auto* label = qobject_cast<QLabel*>(widget); label && !plain(label->text()).isEmpty())
            caption = plain(label->text());
        else if (isBox(widget) && !isNamed(widget))
            widget->setAccessibleName(caption);
        else if (qobject_cast<QToolButton*>(widget) && widget->accessibleName().isEmpty())
            widget->setAccessibleName(QStringLiteral("Liste : ") + caption);
    }
}

} // namespace

void nameControls(QWidget& window) {
    const QString title = plain(window.windowTitle());
    const QList<QWidget*> all = QList<QWidget*>{&window} + window.findChildren<QWidget*>();
    for (const QWidget* widget : all) {
        QString caption = title;
        if (widget->layout()) walk(*widget->layout(), caption);
    }
    for (QWidget* widget : all) // what stands in no layout is what the window is about
        if (isBox(widget) && !isNamed(widget)) widget->setAccessibleName(title);
}

} // namespace molven

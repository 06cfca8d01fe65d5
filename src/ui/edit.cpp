#include "ui/edit.h"

#include "data/dates.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace molven {

bool Edit::leaveIfChanged() {
    if (text() == entered_) return true;
    entered_ = text();
    return !left || left();
}

void Edit::put(const QString& newText) {
    setText(newText);
    entered_ = text();
    setCursorPosition(0);
}

void Edit::setEditable(bool editable) {
    setReadOnly(!editable);
    setFocusPolicy(editable ? Qt::StrongFocus : Qt::ClickFocus);
    QPalette colours = parentWidget() ? parentWidget()->palette() : QPalette();
    if (!editable) colours.setColor(QPalette::Base, colours.color(QPalette::Window));
    setPalette(colours);
}

QString Edit::value() const {
    if (inputMask().isEmpty()) return text();
    return isEmptyDate(text()) ? QString() : text();
}

void Edit::keyPressEvent(QKeyEvent* event) {
    if (takesScans && event->text() == QChar(0x1D))
        insert(QString(QChar(0x241D)));
    else
        QLineEdit::keyPressEvent(event);
}

void Edit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    entered_ = text();
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
        event->reason() == Qt::OtherFocusReason)
        selectAll();
    if (!inputMask().isEmpty() && isEmptyDate(text())) setCursorPosition(0);
}

void Edit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const auto reason = event->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason && reason != Qt::MenuBarFocusReason)
        leaveIfChanged();
}

DateBox::DateBox(QWidget* parent, Precision precision) : Edit(parent) {
    setInputMask(precision == Precision::Day ? QStringLiteral("99/99/9999;_") : QStringLiteral("99/9999;_"));
    setFixedWidth(precision == Precision::Day ? 100 : 80);
}

} // namespace molven

#include "ui/edit.h"

#include "data/dates.h"
#include "ui/style.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>

namespace molven {

bool Edit::leave() {
    if (leaving_) return true; // the handler moves on to another box
    if (text() == settled_) {
        setRefused(false);
        return true;
    }
    const QString accepted = settled_;
    leaving_ = true;
    const bool taken = !left || left();
    leaving_ = false;
    // What a handler that refuses put into shape is not accepted by that.
    settled_ = taken ? text() : accepted;
    setRefused(!taken);
    return taken;
}

void Edit::put(const QString& newText) {
    setText(newText);
    settled_ = text();
    setCursorPosition(0);
    if (!leaving_) setRefused(false);
    style::markMended(*this);
}

void Edit::setEditable(bool editable) {
    setReadOnly(!editable);
    setFocusPolicy(editable ? Qt::StrongFocus : Qt::ClickFocus);
}

void Edit::setRefused(bool refused) {
    refusedText_ = refused ? text() : QString();
    refused_ = refused;
    if (!refused)
        style::markMended(*this);
    else if (!style::isRefused(*this)) // whoever refused did not name the box
        style::markRefused(*this, QStringLiteral("Valeur refusée"));
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
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
        event->reason() == Qt::OtherFocusReason)
        selectAll();
    if (!inputMask().isEmpty() && isEmptyDate(text())) setCursorPosition(0);
}

void Edit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    switch (event->reason()) {
    case Qt::PopupFocusReason:
    case Qt::ActiveWindowFocusReason:
    case Qt::MenuBarFocusReason:
        return; // the user comes back
    case Qt::MouseFocusReason:
        // A pressed button leaves the boxes itself, once.
        if (qobject_cast<QAbstractButton*>(QApplication::focusWidget())) return;
        break;
    default:
        break;
    }
    if (!isReadOnly() && !isRefused()) leave();
}

DateBox::DateBox(QWidget* parent, Precision precision) : Edit(parent) {
    setInputMask(precision == Precision::Day ? QStringLiteral("99/99/9999;_") : QStringLiteral("99/9999;_"));
    setFixedWidth(style::boxWidth(precision == Precision::Day ? 10 : 7));
    put({});
}

} // namespace molven

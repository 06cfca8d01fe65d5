#include "ui/edit.h"

#include "data/clock.h"
#include "data/dates.h"
#include "ui/style.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCalendarWidget>
#include <QFocusEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace molven {

bool Edit::leave() {
    if (leaving_) return true; // the handler moves on to another box
    if (text() != settled_) complete();
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

DateBox::DateBox(QWidget* parent, Precision precision) : Edit(parent), precision_(precision) {
    setInputMask(precision == Precision::Day ? QStringLiteral("99/99/9999;_") : QStringLiteral("99/9999;_"));
    setFixedWidth(style::boxWidth(precision == Precision::Day ? 10 : 7));
    put({});
}

QString DateBox::shownAs(const QDate& date) const {
    return precision_ == Precision::Day ? dateText(date) : monthText(date);
}

void DateBox::complete() {
    const QDate today = Clock::today();
    const QDate date = precision_ == Precision::Day ? typedDay(text(), today) : typedMonth(text(), today);
    if (date.isValid()) setText(shownAs(date));
}

/// True when the key belongs to a distance from today, which the box follows at once.
bool DateBox::takesOffset(const QString& key) {
    const bool isSign = key == u"+" || key == u"-";
    const bool isFresh = isEmptyDate(text()) || hasSelectedText();
    if (isSign && (key == u"+" || isFresh))
        offset_ = key;
    else if (!offset_.isEmpty() && offset_.size() < 5 && key.size() == 1 && key.front().isDigit())
        offset_ += key;
    else
        return false;
    const int distance = offset_.toInt();
    const QDate today = Clock::today();
    setText(shownAs(precision_ == Precision::Day ? today.addDays(distance) : today.addMonths(distance)));
    return true;
}

void DateBox::keyPressEvent(QKeyEvent* event) {
    static const QString separators = QStringLiteral(",.- ");
    const QString key = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier) ? QString() : event->text();
    if (isReadOnly()) return Edit::keyPressEvent(event);
    if (event->key() == Qt::Key_F4) return openCalendar();
    if (takesOffset(key)) return;
    offset_.clear();
    if (key.compare(u"t", Qt::CaseInsensitive) == 0) return setText(shownAs(Clock::today()));
    if (key.size() == 1 && separators.contains(key)) {
        QKeyEvent slash(event->type(), Qt::Key_Slash, Qt::NoModifier, QStringLiteral("/"));
        return Edit::keyPressEvent(&slash);
    }
    Edit::keyPressEvent(event);
}

void DateBox::focusOutEvent(QFocusEvent* event) {
    offset_.clear();
    Edit::focusOutEvent(event);
}

void DateBox::openCalendar() {
    auto* popup = new QFrame(this, Qt::Popup);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    auto* calendar = new QCalendarWidget(popup);
    const QDate today = Clock::today();
    const QDate shown = precision_ == Precision::Day ? typedDay(text(), today) : typedMonth(text(), today);
    calendar->setSelectedDate(shown.isValid() ? shown : today);
    calendar->setFirstDayOfWeek(Qt::Monday);
    calendar->setLocale(QLocale(QLocale::French, QLocale::France));
    const auto choose = [this, popup](const QDate& date) {
        setText(shownAs(date));
        popup->close();
    };
    connect(calendar, &QCalendarWidget::clicked, this, choose);
    connect(calendar, &QCalendarWidget::activated, this, choose);
    auto* layout = new QVBoxLayout(popup);
    style::nest(*layout);
    layout->addWidget(calendar);
    popup->adjustSize();
    const QRect screen = this->screen()->availableGeometry();
    const QPoint below = mapToGlobal(rect().bottomLeft());
    popup->move(std::min(below.x(), screen.right() - popup->width()),
                std::min(below.y(), screen.bottom() - popup->height()));
    popup->show();
    calendar->setFocus();
}

} // namespace molven

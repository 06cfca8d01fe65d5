#include "ui/work_line.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

namespace molven {

namespace {

constexpr int Mark = 16; ///< side of the mark
constexpr int Height = style::RowHeight + style::Gap;

} // namespace

WorkLine::WorkLine(const QString& name, style::Tone tone, const QString& words, const QString& details, QWidget* parent)
    : QAbstractButton(parent), tone_(tone), words_(words), details_(details) {
    setObjectName(name);
    const QString whole = details.isEmpty() ? words : words + QStringLiteral(" : ") + details;
    setText(QString(whole).replace(u'&', QStringLiteral("&&"))); // no access key
    setAccessibleName(whole);
    setToolTip(whole);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize WorkLine::sizeHint() const {
    return {Mark + 4 * style::Gap + fontMetrics().horizontalAdvance(words_ + details_) + style::WideGap, Height};
}

QSize WorkLine::minimumSizeHint() const { return {style::boxWidth(30), Height}; }

void WorkLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (underMouse() || isDown()) painter.fillRect(rect(), palette().alternateBase());
    const QRect mark(style::Gap, (height() - Mark) / 2, Mark, Mark);
    style::dot(tone_).paint(&painter, mark);
    QRect room = rect().adjusted(mark.right() + 2 * style::Gap, 0, -style::Gap, 0);
    painter.setPen(palette().color(QPalette::Text));
    const QString words = fontMetrics().elidedText(words_, Qt::ElideRight, room.width());
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, words);
    room.setLeft(room.left() + fontMetrics().horizontalAdvance(words) + style::WideGap);
    painter.setPen(style::colour(style::Tone::Quiet));
    if (room.width() > 0)
        painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter,
                         fontMetrics().elidedText(details_, Qt::ElideRight, room.width()));
    if (!hasFocus()) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.backgroundColor = palette().color(QPalette::Base);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

void WorkLine::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void WorkLine::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

} // namespace molven

#include "ui/quiet_style.h"

#include <QAbstractItemView>
#include <QAction>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

namespace molven::style {

namespace {

Colours lightColours() {
    Colours c;
    c.window = QColor(0xf3, 0xf4, 0xf6);
    c.base = QColor(0xff, 0xff, 0xff);
    c.alternate = QColor(0xf8, 0xf9, 0xfb);
    c.button = QColor(0xff, 0xff, 0xff);
    c.text = QColor(0x1d, 0x23, 0x29);
    c.quiet = QColor(0x59, 0x62, 0x6c);
    c.line = QColor(0xd8, 0xdc, 0xe1);
    c.edge = QColor(0x80, 0x89, 0x93);
    c.accent = QColor(0x1f, 0x5f, 0xa8);
    c.onAccent = QColor(0xff, 0xff, 0xff);
    c.chosen = QColor(0xd2, 0xe4, 0xf7);
    c.chosenText = QColor(0x10, 0x24, 0x3a);
    c.good = QColor(0x17, 0x63, 0x35);
    c.away = QColor(0x1d, 0x57, 0x99);
    c.done = QColor(0x53, 0x5c, 0x66);
    c.warning = QColor(0x7a, 0x4e, 0x00);
    c.alarm = QColor(0xab, 0x22, 0x1b);
    return c;
}

Colours darkColours() {
    Colours c;
    c.window = QColor(0x20, 0x24, 0x28);
    c.base = QColor(0x18, 0x1b, 0x1f);
    c.alternate = QColor(0x1d, 0x21, 0x25);
    c.button = QColor(0x2c, 0x31, 0x37);
    c.text = QColor(0xe3, 0xe6, 0xe9);
    c.quiet = QColor(0xb0, 0xb8, 0xc0);
    c.line = QColor(0x3a, 0x40, 0x47);
    c.edge = QColor(0x73, 0x7c, 0x86);
    c.accent = QColor(0x82, 0xb4, 0xec);
    c.onAccent = QColor(0x10, 0x24, 0x3a);
    c.chosen = QColor(0x27, 0x46, 0x68);
    c.chosenText = QColor(0xf4, 0xf7, 0xfa);
    c.good = QColor(0x84, 0xd3, 0x9f);
    c.away = QColor(0x97, 0xc4, 0xf3);
    c.done = QColor(0xb4, 0xbc, 0xc5);
    c.warning = QColor(0xe8, 0xbb, 0x62);
    c.alarm = QColor(0xff, 0x9d, 0x94);
    return c;
}

constexpr qreal Radius = 3;
constexpr int CellMargin = 5;
constexpr qreal CrossSize = 7;

void roundedBox(QPainter& painter, const QRect& room, const QColor& fill, const QColor& edge, qreal width = 1) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill);
    painter.setPen(QPen(edge, width));
    const qreal half = width / 2;
    painter.drawRoundedRect(QRectF(room).adjusted(half, half, -half, -half), Radius, Radius);
    painter.restore();
}

/// A box that can be typed into has an edge; a value that cannot stands on a thin line.
void drawBox(const QStyleOption& box, QPainter& painter, const QWidget* widget) {
    const Colours& c = colours(scheme());
    const QRect& room = box.rect;
    const bool refused = widget && isRefused(*widget);
    const bool open = (box.state & QStyle::State_Enabled) && !(box.state & QStyle::State_ReadOnly);
    if (!open && !refused) {
        painter.setPen(c.line);
        painter.drawLine(room.bottomLeft(), room.bottomRight());
        return;
    }
    const bool focused = box.state & QStyle::State_HasFocus;
    roundedBox(painter, room, c.base, refused ? c.alarm : focused ? c.accent : c.edge, refused || focused ? 2 : 1);
    if (widget && isRequired(*widget))
        painter.fillRect(QRect(room.left(), room.top() + 3, 3, room.height() - 6), refused ? c.alarm : c.accent);
}

bool isDefault(const QStyleOption* option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return button && (button->features & QStyleOptionButton::DefaultButton) && (button->state & QStyle::State_Enabled);
}

void drawButton(const QStyleOption& button, QPainter& painter) {
    const Colours& c = colours(scheme());
    const bool enabled = button.state & QStyle::State_Enabled;
    const bool filled = isDefault(&button);
    QColor fill = filled ? c.accent : enabled ? c.button : c.window;
    if (button.state & QStyle::State_On) fill = c.chosen;
    if (button.state & QStyle::State_Sunken)
        fill = filled ? c.accent.darker(115) : c.line;
    else if (enabled && (button.state & QStyle::State_MouseOver))
        fill = filled ? c.accent.lighter(108) : c.alternate;
    roundedBox(painter, button.rect, fill, !enabled ? c.line : filled ? c.accent : c.edge);
    if (!(button.state & QStyle::State_HasFocus)) return;
    const QRect inner = filled ? button.rect.adjusted(2, 2, -2, -2) : button.rect;
    roundedBox(painter, inner, Qt::transparent, filled ? c.onAccent : c.accent, filled ? 1 : 2);
}

/// Below the title of the group.
void drawGroupFrame(const QStyleOption& group, QPainter& painter, const QWidget* widget) {
    const Colours& c = colours(scheme());
    const bool changing = widget && isChanging(*widget);
    const QRect room = group.rect.adjusted(0, group.fontMetrics.height() + Gap, 0, 0);
    roundedBox(painter, room, Qt::transparent, changing ? c.accent : c.line, changing ? 2 : 1);
}

/// The cross of a tab, which the toolkit's own style paints red.
void drawCross(const QStyleOption& cross, QPainter& painter) {
    const Colours& c = colours(scheme());
    const bool meant = cross.state & (QStyle::State_Raised | QStyle::State_Sunken | QStyle::State_MouseOver);
    if (meant && (cross.state & QStyle::State_Enabled))
        roundedBox(painter, cross.rect, cross.state & QStyle::State_Sunken ? c.line : c.button, c.line);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(c.quiet, 1.5));
    QRectF room(0, 0, CrossSize, CrossSize);
    room.moveCenter(QRectF(cross.rect).center());
    painter.drawLine(room.topLeft(), room.bottomRight());
    painter.drawLine(room.topRight(), room.bottomLeft());
    painter.restore();
}

void drawHeader(const QRect& room, QPainter& painter, bool isLast) {
    const Colours& c = colours(scheme());
    painter.fillRect(room, c.window);
    painter.setPen(c.line);
    painter.drawLine(room.bottomLeft(), room.bottomRight());
    if (!isLast) painter.drawLine(room.right(), room.top() + 4, room.right(), room.bottom() - 4);
}

} // namespace

const Colours& colours(Scheme scheme) {
    static const Colours light = lightColours(), dark = darkColours();
    return scheme == Scheme::Light ? light : dark;
}

QuietStyle::QuietStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

int QuietStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_LayoutLeftMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutBottomMargin:
        return 10;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return Gap;
    case PM_HeaderMargin: // a number stays away from the words of the next column
        return CellMargin;
    case PM_FocusFrameHMargin:
        return qobject_cast<const QAbstractItemView*>(widget) ? CellMargin - 1
                                                              : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize QuietStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    QSize made = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton:
        return {std::max(76, size.width() + 18), std::max(26, made.height())};
    case CT_LineEdit:
    case CT_ComboBox:
        return {made.width(), std::max(24, made.height())};
    case CT_HeaderSection:
        return {made.width(), std::max(int(RowHeight), made.height())};
    case CT_MenuItem:
        return {made.width() + 8, made.height() + 2};
    default:
        return made;
    }
}

void QuietStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const Colours& c = colours(scheme());
    switch (element) {
    case PE_PanelLineEdit:
        return drawBox(*option, *painter, widget);
    case PE_PanelButtonCommand:
        return drawButton(*option, *painter);
    case PE_PanelButtonTool:
        if (option->state & State_Enabled) drawButton(*option, *painter);
        return;
    case PE_IndicatorTabClose:
        return drawCross(*option, *painter);
    case PE_FrameGroupBox:
        return drawGroupFrame(*option, *painter, widget);
    case PE_Frame:
        if (qobject_cast<const QAbstractItemView*>(widget))
            return roundedBox(*painter, option->rect, Qt::transparent,
                              option->state & State_HasFocus ? c.accent : c.line);
        break;
    case PE_FrameFocusRect: // buttons and lists show the focus on their edge
        if (qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QPushButton*>(widget)) return;
        break;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void QuietStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    switch (element) {
    case CE_HeaderSection: {
        const auto* section = qstyleoption_cast<const QStyleOptionHeader*>(option);
        return drawHeader(option->rect, *painter, section && section->position == QStyleOptionHeader::End);
    }
    case CE_HeaderEmptyArea:
        return drawHeader(option->rect, *painter, true);
    case CE_PushButtonLabel:
        if (isDefault(option)) {
            QStyleOptionButton label(*qstyleoption_cast<const QStyleOptionButton*>(option));
            label.palette.setColor(QPalette::ButtonText, colours(scheme()).onAccent);
            return QProxyStyle::drawControl(element, &label, painter, widget);
        }
        break;
    case CE_MenuItem: {
        const auto* menu = qobject_cast<const QMenu*>(widget);
        const QAction* entry = menu ? menu->actionAt(option->rect.center()) : nullptr;
        if (!entry || !isIdle(*entry)) break;
        QStyleOptionMenuItem quiet(*qstyleoption_cast<const QStyleOptionMenuItem*>(option));
        for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
            quiet.palette.setColor(role, colours(scheme()).quiet);
        quiet.font.setItalic(true);
        return QProxyStyle::drawControl(element, &quiet, painter, widget);
    }
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

} // namespace molven::style

#include "ui/style.h"

#include "ui/quiet_style.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QIconEngine>
#include <QLabel>
#include <QPainter>
#include <QPixmapCache>
#include <QToolTip>
#include <QVariant>

#include <algorithm>

namespace molven::style {

namespace {

Scheme current = Scheme::Light;

const char* const RefusedProperty = "molvenRefused";
const char* const OwnTipProperty = "molvenOwnTip";
const char* const RequiredProperty = "molvenRequired";
const char* const ChangingProperty = "molvenChanging";
const char* const IdleProperty = "molvenIdle";

/// The system's own palette shows which scheme it is in, whatever the platform.
Scheme systemScheme() {
    QApplication::setPalette(QPalette());
    return QApplication::palette().color(QPalette::Window).lightness() < 128 ? Scheme::Dark : Scheme::Light;
}

/// Follows the system when it turns dark or light while the program runs.
class SchemeWatch : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ThemeChange && watched->isWindowType()) apply(systemScheme());
        return false;
    }
};

/// Half as large as its place. Drawn at the moment of painting: a picture of each mark that a list shows would stay in
/// the toolkit's cache.
class Dot : public QIconEngine {
public:
    explicit Dot(const QColor& colour) : colour_(colour) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const qreal wide = std::min(rect.width(), rect.height()) / 4.0;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(colour_);
        painter->drawEllipse(QRectF(rect).center(), wide, wide);
        painter->restore();
    }
    QIconEngine* clone() const override { return new Dot(colour_); }

private:
    QColor colour_;
};

} // namespace

QPalette palette(Scheme scheme) {
    const Colours& c = colours(scheme);
    QPalette made(c.button, c.window);
    const auto set = [&made](QPalette::ColorRole role, const QColor& active, const QColor& disabled) {
        made.setColor(QPalette::Active, role, active);
        made.setColor(QPalette::Inactive, role, active);
        made.setColor(QPalette::Disabled, role, disabled);
    };
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) set(role, c.text, c.quiet);
    set(QPalette::Window, c.window, c.window);
    set(QPalette::Base, c.base, c.window);
    set(QPalette::AlternateBase, c.alternate, c.window);
    set(QPalette::Button, c.button, c.window);
    set(QPalette::Highlight, c.chosen, c.line);
    set(QPalette::HighlightedText, c.chosenText, c.text);
    set(QPalette::PlaceholderText, c.quiet, c.quiet);
    set(QPalette::ToolTipBase, c.base, c.base);
    set(QPalette::ToolTipText, c.text, c.text);
    set(QPalette::BrightText, c.alarm, c.alarm);
    set(QPalette::Link, c.accent, c.quiet);
    set(QPalette::LinkVisited, c.accent, c.quiet);
    set(QPalette::Mid, c.line, c.line);
    set(QPalette::Dark, c.edge, c.line);
    return made;
}

void apply(Scheme scheme) {
    current = scheme;
    if (!dynamic_cast<QuietStyle*>(QApplication::style())) QApplication::setStyle(new QuietStyle);
    QApplication::setPalette(palette(scheme));
    QToolTip::setPalette(palette(scheme));
}

void apply(QApplication& application) {
    // The toolkit keeps pictures of boxes by their palette, and each window has its own: few of them are asked for
    // again.
    QPixmapCache::setCacheLimit(2048);
    apply(systemScheme());
    application.installEventFilter(new SchemeWatch(&application));
}

Scheme scheme() { return current; }

QColor colour(Tone tone, Scheme scheme) {
    const Colours& c = colours(scheme);
    switch (tone) {
    case Tone::Quiet:
        return c.quiet;
    case Tone::Good:
        return c.good;
    case Tone::Away:
        return c.away;
    case Tone::Done:
        return c.done;
    case Tone::Warning:
        return c.warning;
    case Tone::Alarm:
        break;
    }
    return c.alarm;
}

QColor colour(Tone tone) { return colour(tone, current); }

QIcon dot(Tone tone) { return QIcon(new Dot(colour(tone))); }

int boxWidth(int characters) { return std::clamp(characters * 9 + 16, 36, 330); }

int readableWidth() { return QFontMetrics(QApplication::font()).averageCharWidth() * 100; }

void nest(QLayout& layout) { layout.setContentsMargins(0, 0, 0, 0); }

void spaceAsBoxes(QGridLayout& layout) {
    layout.setHorizontalSpacing(8);
    layout.setVerticalSpacing(2);
}

void letBreathe(QLayout& layout) {
    layout.setContentsMargins(24, 20, 24, 20);
    layout.setSpacing(12);
}

void keepTogether(QGridLayout& layout) {
    constexpr int BehindAll = 20;
    layout.setRowStretch(BehindAll, 1);
    layout.setColumnStretch(BehindAll, 1);
}

void keepFoot(QWidget& window, QLabel& line) {
    line.setMargin(4);
    window.setContentsMargins(0, 0, 0, line.sizeHint().height());
}

void makeHeading(QLabel& label) { emphasise(label); }

void emphasise(QWidget& value) {
    QFont font = value.font();
    font.setBold(true);
    value.setFont(font);
}

void makeRefusal(QLabel& label) { label.setForegroundRole(QPalette::BrightText); }

void makeQuiet(QLabel& label) { label.setForegroundRole(QPalette::PlaceholderText); }

bool isRefused(const QWidget& box) { return box.property(RefusedProperty).toBool(); }

void markRefused(QWidget& box, const QString& text) {
    if (!isRefused(box)) {
        box.setProperty(OwnTipProperty, box.toolTip());
        box.setProperty(RefusedProperty, true);
    }
    box.setToolTip(text.trimmed());
    box.update();
}

void markMended(QWidget& box) {
    if (!isRefused(box)) return;
    box.setProperty(RefusedProperty, QVariant());
    box.setToolTip(box.property(OwnTipProperty).toString());
    box.update();
}

bool isRequired(const QWidget& box) { return box.property(RequiredProperty).toBool(); }

void markRequired(QWidget& box, bool required) {
    box.setProperty(RequiredProperty, required);
    box.update();
}

bool isChanging(const QWidget& group) { return group.property(ChangingProperty).toBool(); }

void markChanging(QWidget& group, bool changing) {
    group.setProperty(ChangingProperty, changing);
    group.update();
}

bool isIdle(const QAction& entry) { return entry.property(IdleProperty).toBool(); }

void markIdle(QAction& entry, const QString& why) {
    entry.setProperty(IdleProperty, !why.isEmpty());
    entry.setToolTip(why);
}

} // namespace molven::style

#pragma once

#include "ui/style.h"

#include <QProxyStyle>

class QStyleOptionFrame;

namespace molven::style {

/// Every colour of the program, in one scheme.
struct Colours {
    QColor window, base, alternate, button;
    QColor text, quiet;
    QColor line; ///< between things
    QColor edge; ///< round what can be typed into or pressed
    QColor accent, onAccent;
    QColor chosen, chosenText;
    QColor good, away, done, warning, alarm;
};

const Colours& colours(Scheme scheme);

/// Draws flat what the toolkit's own style draws raised: boxes that can be typed into have an edge, values that cannot
/// stand on the window like text; the button that Return presses is filled.
class QuietStyle : public QProxyStyle {
public:
    QuietStyle();
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

} // namespace molven::style

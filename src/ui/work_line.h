#pragma once

#include "ui/style.h"

#include <QAbstractButton>

namespace molven {

/// One line of what waits to be done, pressed to do it: a mark that says how pressing, the words, and behind them what
/// only explains.
class WorkLine : public QAbstractButton {
public:
    WorkLine(const QString& name, style::Tone tone, const QString& words, const QString& details, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    const style::Tone tone_;
    const QString words_, details_;
};

} // namespace molven

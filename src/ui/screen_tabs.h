#pragma once

#include <QHash>
#include <QPointer>
#include <QTabWidget>

namespace molven {

class Form;

/// Screens inside the main window, a tab each, behind the home that is always there. A tab is closed as a window is:
/// its screen is asked. Ctrl+Tab goes from one to the next, the middle button of the mouse closes one.
class ScreenTabs : public QTabWidget {
public:
    /// While it is the only page, there is nothing to see of the tabs.
    ScreenTabs(QWidget* home, QWidget* parent);
    ~ScreenTabs() override;

    void add(Form& form);
    /// Shows a screen that stands in a tab; false for any other.
    bool bringForward(Form& form);
    void showHome() { setCurrentIndex(0); }
    /// The screen in sight; null while it is the home.
    Form* current() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int tabOf(const Form& form) const;
    void moveCursor();

    QPointer<QWidget> shown_;                    ///< the page in sight
    QHash<QWidget*, QPointer<QWidget>> cursors_; ///< where each page was left
};

} // namespace molven

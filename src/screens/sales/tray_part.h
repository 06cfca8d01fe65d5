#pragma once

#include <QWidget>

#include <functional>

class QPushButton;

namespace molven {

/// One of the parts that open below the lines of a document, one at a time.
class TrayPart : public QWidget {
public:
    using QWidget::QWidget;

    /// The button that writes what the part holds; Return presses it.
    virtual QPushButton* validation() const = 0;
    /// What the user typed here and would lose, in words; empty when nothing.
    virtual QString unsaved() const { return {}; }

    std::function<void()> left; ///< the user leaves the part
};

} // namespace molven

#pragma once

#include "data/record.h"

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

    /// The document as it is after its lines or its header changed.
    virtual void follow(const Record&) {}
    /// The document was read anew since another workstation changed it; what is typed stays.
    virtual void reread(const Record&) {}

    std::function<void()> left;    ///< the user leaves the part
    std::function<void()> written; ///< the document changed
    /// Runs a deed; when another workstation changed what it is about, offers to read the document again.
    std::function<void(const std::function<void()>& deed)> attempt;
};

} // namespace molven

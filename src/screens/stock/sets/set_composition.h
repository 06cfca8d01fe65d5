#pragma once

#include "stock/set_types.h"
#include "ui/code_boxes.h"
#include "ui/record_panel.h"

#include <QWidget>

class QLabel;

namespace molven {

class Form;
class Grid;

/// What a set of the type on the screen is made of: its components, and the boxes of one of them.
class SetComposition : public QWidget {
public:
    SetComposition(Form& form, const set_types::Files& files);

    /// Shows the composition of a type, empty for none.
    void show(const QString& type);
    /// The component whose row is current.
    std::optional<Record> component() const { return shown_; }
    /// Whether a component is typed that was not recorded.
    bool hasUnsavedWork() const;

    std::function<void()> chosen;  ///< another component became current
    std::function<void()> changed; ///< the composition was written

private:
    QLayout* entry();
    void bringUp(const Record& component);
    void startAdding();
    void save();
    void remove();
    void refresh(const QString& article);

    Form& form_;
    set_types::Files files_;
    QString type_;
    std::optional<Record> shown_; ///< as read; nothing while one is added
    QLabel* title_;
    Grid* grid_;
    RecordPanel* panel_;
    CodeBoxes codes_;
};

} // namespace molven

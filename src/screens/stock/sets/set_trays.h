#pragma once

#include "sales/set_journeys.h"
#include "ui/code_boxes.h"
#include "ui/form.h"
#include "ui/record_panel.h"

#include <QSet>
#include <QWidget>

class QLabel;
class QPushButton;

namespace molven {

class Grid;

/// What opens below a set while it is filled, sent or taken back: one at a time.
class SetTray : public QWidget {
public:
    SetTray(Form& form, set_journeys::Files& files) : QWidget(&form), form_(form), files_(files) {}

    /// The button that leaves the tray; Escape presses it.
    QPushButton* cancel() const { return leave_; }
    /// The button that Return presses; null where it chooses in a list.
    QPushButton* validation() const { return validate_; }
    /// What the user typed or ticked here and would lose.
    virtual bool hasUnsavedWork() const { return false; }

    std::function<void()> left;
    std::function<void()> written; ///< the set changed

protected:
    Form& form_;
    set_journeys::Files& files_;
    QString serial_;
    QPushButton* leave_ = nullptr;
    QPushButton* validate_ = nullptr;
};

/// Units put into a set: by list, by scan, or all that lacks at once.
class SetFilling : public SetTray {
public:
    SetFilling(Form& form, set_journeys::Files& files);

    /// Offers the units of the first component that lacks some, of `component` if that one does.
    void open(const QString& serial, const QString& component);
    /// The units of that component.
    void offer(const QString& component);
    /// Places the unit that is current among those offered.
    void place();

private:
    std::optional<ancillary_sets::Component> lacking(const QString& component) const;
    void offer(const ancillary_sets::Component& component, bool isTold);
    void placeUnits(const QStringList& units);
    void placeEarliest();
    bool scan(const QString& text);

    QString component_;
    QLabel* left_;
    Grid* grid_;
};

/// A set sent to a client.
class SetSending : public SetTray {
public:
    SetSending(Form& form, set_journeys::Files& files);

    void open(const QString& serial);

    bool hasUnsavedWork() const override;

private:
    void send();

    RecordPanel* panel_;
    CodeBoxes codes_;
};

/// A set that comes back: what came back is ticked or scanned, the rest was used.
class SetReturning : public SetTray {
public:
    SetReturning(Form& form, set_journeys::Files& files);

    void open(const Record& set, const QStringList& units);
    bool isBack(const QString& unit) const { return back_.contains(unit); }
    void toggle(const QString& unit);

    bool hasUnsavedWork() const override { return !back_.isEmpty(); }

    std::function<void()> ticked; ///< other units count as come back

private:
    bool scan(const QString& text);
    void showCount();
    void write();

    std::optional<Record> set_;
    QStringList units_;
    QSet<QString> back_;
    QLabel* count_;
    RecordPanel* panel_;
    CodeBoxes codes_;
};

} // namespace molven

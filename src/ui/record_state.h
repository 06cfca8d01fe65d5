#pragma once

#include "data/record.h"

#include <QHash>
#include <QList>

#include <functional>
#include <optional>

class QPushButton;

namespace molven {

class Form;
class RecordPanel;

/// The record on a screen and what its user does with it: looks at it, adds one, changes it. It opens and closes the
/// buttons, knows whether typed work would be lost, and writes a change that another workstation may have forestalled.
class RecordState {
public:
    enum class State { Viewing, Adding, Changing };
    /// When a button can act.
    enum class Acts {
        Idle,     ///< while nothing is entered
        Entering, ///< while a record is added or changed
        Shown,    ///< while a record is looked at
        Open,     ///< while a record is looked at or changed
    };

    /// `entering` and `none` say why a button cannot act: something is entered first, no record is shown.
    RecordState(Form& form, const QString& entering, const QString& none = {});

    void add(Acts acts, const QList<QPushButton*>& buttons);
    const QList<QPushButton*>& buttons(Acts acts) const { return buttons_[static_cast<int>(acts)]; }

    void view(const std::optional<Record>& record) { become(State::Viewing, record); }
    /// A record is added; it starts from `blank`, where the screen has one.
    void startAdding(const std::optional<Record>& blank = {}) { become(State::Adding, blank); }
    void startChanging() { become(State::Changing, record_); }
    /// The record shown as it is stored now.
    void reread(const Record& record) { record_ = record; }

    State state() const { return state_; }
    bool isEntering() const { return state_ != State::Viewing; }
    /// The record as it was brought up, or what an added one started from.
    const std::optional<Record>& record() const { return record_; }

    /// Answers whether the boxes show something else than the record.
    std::function<bool()> isTyped = [] { return false; };
    /// Whether leaving the record would lose what was typed.
    bool hasUnsavedWork() const { return isTyped(); }

    /// Writes a change of the record shown; false when another workstation had changed it meanwhile: the user is told
    /// what, and may read it again under what he typed. `stored` finds the record as it is now.
    bool change(const std::function<void()>& write, RecordPanel& panel,
                const std::function<std::optional<Record>()>& stored);

private:
    void become(State state, const std::optional<Record>& record);
    bool canAct(Acts acts) const;

    Form& form_;
    const QString entering_, none_;
    State state_ = State::Viewing;
    std::optional<Record> record_;
    QList<QPushButton*> buttons_[4];
};

} // namespace molven

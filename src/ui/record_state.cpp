#include "ui/record_state.h"

#include "data/errors.h"
#include "ui/form.h"
#include "ui/record_panel.h"

namespace molven {

RecordState::RecordState(Form& form, const QString& entering, const QString& none)
    : form_(form), entering_(entering), none_(none) {}

void RecordState::add(Acts acts, const QList<QPushButton*>& buttons) { buttons_[static_cast<int>(acts)] += buttons; }

bool RecordState::canAct(Acts acts) const {
    switch (acts) {
    case Acts::Idle:
        return !isEntering();
    case Acts::Entering:
        return isEntering();
    case Acts::Shown:
        return !isEntering() && record_;
    case Acts::Open:
        return state_ != State::Adding && record_;
    }
    return false;
}

void RecordState::become(State state, const std::optional<Record>& record) {
    state_ = state;
    record_ = record;
    const QString whyNot = isEntering() ? entering_ : none_;
    for (const Acts acts : {Acts::Idle, Acts::Shown, Acts::Open, Acts::Entering})
        for (QPushButton* button : buttons(acts))
            form_.allow(button, canAct(acts),
                        acts == Acts::Entering ? QStringLiteral("Rien n'est en cours de saisie") : whyNot);
}

bool RecordState::change(const std::function<void()>& write, RecordPanel& panel,
                         const std::function<std::optional<Record>()>& stored) {
    const auto fresh = [&] {
        const auto found = stored();
        if (!found) throw Refusal(QStringLiteral("Cette fiche a été supprimée par un autre poste"));
        return *found;
    };
    const auto changes = [&] { return panel.changesOf(*record_, fresh()); };
    const auto read = [&] {
        const Record now = fresh();
        panel.reread(*record_, now);
        reread(now);
    };
    return form_.written(write, changes, read);
}

} // namespace molven

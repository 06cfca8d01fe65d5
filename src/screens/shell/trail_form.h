#pragma once

#include "sales/record_trail.h"
#include "ui/form.h"

namespace molven {

class Grid;

/// Who changed a record, what and when. Its mode word is the subject, see trailButton().
class TrailForm : public Form {
public:
    explicit TrailForm(Desk& desk);

private:
    void print();

    Grid* grid_;
};

/// The button "Historique" of a screen, which Ctrl+H presses too: opens the changes of what `subject` gives, which may
/// throw Refusal when nothing is on the screen.
QPushButton* trailButton(Form& form, const std::function<TrailSubject()>& subject);

} // namespace molven

#pragma once

#include <QString>

class QWidget;

namespace molven {

enum class Icon { None, Information, Warning, Stop, Question };

/// What the program says and asks. Screens know no other message box, so that a test or a scenario may stand in
/// for the user.
class Prompt {
public:
    virtual ~Prompt() = default;
    /// A piece of news that asks nothing: the windows show it in their line of notices, without stopping the hands.
    virtual void hear(const QString& text) { Q_UNUSED(text) }
    /// A message with one button, for what the user must know before going on: a refusal, a warning, a fault.
    virtual void tell(const QString& text, const QString& title = {}, Icon icon = Icon::Information) = 0;
    /// A question; true for yes, which is the default.
    virtual bool ask(const QString& text, const QString& title = {}, Icon icon = Icon::Question) = 0;
    /// A question whose yes destroys something. `about` names it on a line of its own ("Client 000007, CLINIQUE DU
    /// PARC"); no is the default, so that a hasty Return or a scanner's keeps everything.
    virtual bool confirm(const QString& text, const QString& about) = 0;
};

/// The real one: modal boxes over the active window, all by keyboard.
class MessageBoxPrompt : public Prompt {
public:
    void tell(const QString& text, const QString& title, Icon icon) override;
    bool ask(const QString& text, const QString& title, Icon icon) override;
    bool confirm(const QString& text, const QString& about) override;
};

} // namespace molven

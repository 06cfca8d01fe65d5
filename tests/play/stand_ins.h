#pragma once

#include "ui/desk.h"

#include <QQueue>

#include <optional>

namespace molven::play {

/// Stands in for the user in front of message boxes.
class ScriptedPrompt : public Prompt {
public:
    void hear(const QString& text) override;
    void tell(const QString& text, const QString& title, Icon icon) override;
    bool ask(const QString& text, const QString& title, Icon icon) override;
    bool confirm(const QString& text, const QString& about) override;

    QQueue<QString> unchecked; ///< messages and questions the scenario has not looked at
    QQueue<bool> answers;      ///< standing ready
    QString unanswered;        ///< a question that found no answer ready; empty otherwise
};

/// Keeps what was printed last, and saves everything as print-N.pdf when a folder is given.
class KeepingPrinter : public PrintTarget {
public:
    explicit KeepingPrinter(const QString& folder) : folder_(folder) {}
    bool print(const PrintJob& job) override;

    std::optional<PrintJob> last;
    int printed = 0;
    bool prints = true; ///< false: the user only looks at it

private:
    QString folder_;
};

} // namespace molven::play

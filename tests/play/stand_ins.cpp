#include "play/stand_ins.h"

namespace molven::play {

void ScriptedPrompt::hear(const QString& text) { unchecked.enqueue(text); }

void ScriptedPrompt::tell(const QString& text, const QString&, Icon) { unchecked.enqueue(text); }

bool ScriptedPrompt::ask(const QString& text, const QString&, Icon) {
    unchecked.enqueue(text);
    if (!answers.isEmpty()) return answers.dequeue();
    unanswered = text;
    return false;
}

bool ScriptedPrompt::confirm(const QString& text, const QString&) { return ask(text, {}, Icon::Warning); }

bool KeepingPrinter::print(const PrintJob& job) {
    last = job;
    ++printed;
    if (!folder_.isEmpty()) job.savePdf(folder_ + QStringLiteral("/print-%1.pdf").arg(printed));
    return prints;
}

} // namespace molven::play

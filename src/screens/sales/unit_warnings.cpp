#include "screens/sales/unit_warnings.h"

#include "sales/unit_rules.h"
#include "ui/form.h"

namespace molven::unit_warnings {

void tellNotes(Form& form, SalesBook& book, const QList<Record>& units) {
    QStringList notes;
    for (const Record& unit : units) notes += unit_rules::warnings(book, unit).notes;
    if (!notes.isEmpty()) form.prompt().tell(notes.join(u'\n'), {}, Icon::Warning);
}

bool areAccepted(Form& form, SalesBook& book, const QList<Record>& units) {
    QStringList doubts;
    for (const Record& unit : units) doubts += unit_rules::warnings(book, unit).doubts;
    if (doubts.isEmpty()) return true;
    const QString question = doubts.size() == 1 ? QStringLiteral("Voulez-vous la sortir quand même ? ")
                                                : QStringLiteral("Voulez-vous les sortir quand même ? ");
    return form.prompt().confirm(doubts.join(u'\n') + u'\n' + question, book.kind().shownLabel);
}

} // namespace molven::unit_warnings

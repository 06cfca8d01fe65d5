#include "screens/sales/unit_warnings.h"

#include "sales/unit_rules.h"
#include "ui/form.h"

namespace molven::unit_warnings {

void tellNotes(Form& form, SalesBook& book, const Record& header, const QList<Record>& units) {
    QStringList notes;
    for (const Record& unit : units) notes += unit_rules::warnings(book, header, unit).notes;
    if (!notes.isEmpty()) form.prompt().tell(notes.join(u'\n'), {}, Icon::Warning);
}

bool areAccepted(Form& form, SalesBook& book, const Record& header, const QList<Record>& units) {
    QStringList doubts;
    for (const Record& unit : units) doubts += unit_rules::warnings(book, header, unit).doubts;
    if (doubts.isEmpty()) return true;
    const QString question = QStringLiteral("Voulez-vous %1 %2 quand même ? ")
                                 .arg(doubts.size() == 1 ? QStringLiteral("la") : QStringLiteral("les"),
                                      book.kind().isCredit ? QStringLiteral("reprendre") : QStringLiteral("sortir"));
    return form.prompt().confirm(doubts.join(u'\n') + u'\n' + question, book.kind().shownLabel);
}

} // namespace molven::unit_warnings

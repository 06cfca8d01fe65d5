// A transfer note renewed: its units go on to another depot, on a new note.

#include "sales/documents.h"
#include "sales/transfer_notes.h"
#include "screens/sales/document_form.h"
#include "screens/sales/header_entry.h"
#include "ui/grid.h"

#include <QLabel>

namespace molven {

void DocumentForm::startRenewal() {
    const Record document = requireDocument();
    if (!mayLeaveTray()) return;
    if (!prompt().ask(QStringLiteral("Etes-vous sûr de vouloir transférer ce bon affiché ? "))) return;
    const Record note = documents::current(book_, document);
    transfer_notes::requireRenewable(book_, note);
    const QList<Record> lines = transfer_notes::remaining(book_, note);
    entry_.startAdding(note);
    adapt();
    renewal_ = {note, {}};
    for (const Record& line : lines) renewal_->units.append(line[strbtrl.fac_imm]);
    lines_->rows().setRecords(lines);
    total_->setText(totalWords());
    kindLabel_->setText(QStringLiteral("Suite du bon ") + note[strbtre.fac_no]);
    header_->startNew(note[strbtre.fac_clt],
                      [this, note](const QString& code) { return transfer_notes::renewal(book_, note, code); },
                      {&strbtre.fac_depd});
}

} // namespace molven

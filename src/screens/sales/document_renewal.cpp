// A document carried on in another: a transfer note renewed for the next depot, a proforma delivered.

#include "data/format.h"
#include "sales/documents.h"
#include "sales/proformas.h"
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

void DocumentForm::deliverProforma() {
    const Record document = requireDocument();
    proformas::requireDeliverable(book_, document);
    if (!mayLeaveTray()) return;
    notify(QStringLiteral("Nous ne transfèrerons que les articles non suivis"));
    const proformas::Delivered delivered = proformas::deliver(book_, document);
    if (!delivered.keptDownPayment)
        notify(QStringLiteral("L'acompte de %1 dépasse le bon de livraison %2 : il n'y est pas repris")
                   .arg(format(document[table_.fac_acpt], QStringLiteral("#####0.00")),
                        QString(delivered.note[table_.fac_no])));
    display(delivered.proforma);
    notify(QStringLiteral("Transfert en Bon Livraison terminé"));
}

} // namespace molven

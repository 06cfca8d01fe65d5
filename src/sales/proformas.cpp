#include "sales/proformas.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/require.h"
#include "reference/articles.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "sales/lines.h"

namespace molven::proformas {

namespace {

bool isTracked(SalesBook& book, const Record& line) {
    const auto article = articles::find(book.molven, line[strfacl.fac_ref]);
    return article && article->value(strarticle.art_aig) == follow_up::ByUnit;
}

QList<document_lines::Draft> deliverableLines(SalesBook& book, const Record& proforma) {
    QList<document_lines::Draft> drafts;
    for (const Record& line : documents::lines(book, proforma)) {
        if (isTracked(book, line)) continue;
        document_lines::Draft draft(strlivl);
        draft.line = document_lines::copyOf(line, strlivl);
        draft.isText = document_lines::isText(strfacl, line);
        draft.withoutVat = line[strfacl.fac_tar] == u"H";
        drafts.append(draft);
    }
    return drafts;
}

/// What is not delivered makes a note of less than was agreed: money paid beyond it waits for the invoice.
bool keepDownPayment(SalesBook& notes, const Record& note) {
    if (note[strlive.fac_acpt] <= note[strlive.fac_ttc]) return true;
    Record footer = note;
    footer[strlive.fac_acpt] = 0;
    documents::changeFooter(notes, footer, note);
    return false;
}

} // namespace

void requireDeliverable(SalesBook& book, const Record& asRead) {
    require(documents::current(book, asRead)[strface.fac_cpt] != documents::Transferred, book.kind().transferredWords,
            strface.fac_no);
}

Delivered deliver(SalesBook& book, const Record& asRead) {
    SalesBook notes(book, documentKind(QStringLiteral("LIV")));
    Record header(strlive);
    header.copyFrom(asRead);
    const Locks locks = document_locks::ofNew(notes, header).with({document_locks::document(book, asRead)});
    return Transaction::run(book.workspace, QStringLiteral("Transfert en bon de livraison"), locks, [&] {
        requireDeliverable(book, asRead);
        const Record proforma = documents::current(book, asRead);
        header.copyFrom(proforma);
        header[strlive.fac_datf] = dateText(Clock::today());
        const Record note = documents::create(notes, header);
        document_lines::addToNew(notes, note, deliverableLines(book, proforma));
        const bool keptDownPayment = keepDownPayment(notes, documents::current(notes, note));
        book.vente.update(strface, {{strface.fac_blv, note[strlive.fac_no]}, {strface.fac_cpt, documents::Transferred}},
                          strface.fac_no == proforma[strface.fac_no] && strface.fac_aa == proforma[strface.fac_aa]);
        return Delivered{documents::current(book, asRead), documents::current(notes, note), keptDownPayment};
    });
}

void release(SalesBook& deliveries, const Record& note) {
    const QString path = deliveries.session().path(DataFile::Proforma);
    if (!deliveries.workspace.has(path)) return;
    Database proformas = deliveries.workspace.open(path);
    const Criterion delivered = strface.fac_blv == note[strlive.fac_no] && strface.fac_cpt == documents::Transferred;
    QStringList names;
    for (const Record& one : proformas.select(strface, delivered))
        names.append(document_locks::document(proformas, strface, one));
    if (names.isEmpty()) return;
    Transaction transaction(deliveries.workspace, {}, Locks::of(names));
    proformas.update(strface, {{strface.fac_blv, documents::NotInvoiced}, {strface.fac_cpt, documents::Open}},
                     delivered);
    transaction.commit();
}

} // namespace molven::proformas

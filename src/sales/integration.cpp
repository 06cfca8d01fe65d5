#include "sales/integration.h"

#include "data/errors.h"
#include "data/format.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/numbering.h"
#include "sales/unit_moves.h"

namespace molven::integration {

namespace {

[[noreturn]] void refuse(const QString& message) { throw Refusal(message, QStringLiteral("txtchoix")); }

std::optional<Record> noteOf(SalesBook& invoices, const QString& number) {
    return invoices.vente.find(strlive, strlive.fac_no == number, Order::descending(strlive.fac_aa));
}

Record integrable(SalesBook& invoices, const Record& invoice, const QString& number) {
    const QString client = invoice[strface.fac_clt];
    const auto note = noteOf(invoices, number);
    if (!note) refuse(QStringLiteral("Ce Bon de Livraison n'existe pas"));
    const Record& read = *note;
    if (read[strlive.fac_clt] != client)
        refuse(QStringLiteral("Ce Bon de Livraison est au client : ") + read[strlive.fac_clt]);
    if (read[strlive.fac_cpt] == documents::Transferred) refuse(QStringLiteral("Ce bon de Livraison a été facturé"));
    return *note;
}

} // namespace

Criterion openNotesOf(const Record& invoice) {
    return strlive.fac_clt == invoice[strface.fac_clt] && !(strlive.fac_cpt == documents::Transferred);
}

Recordset openDeliveryNotes(SalesBook& invoices, const Record& invoice) {
    Recordset notes = invoices.vente.select(strlive, openNotesOf(invoice), {strlive.tri_datf, strlive.fac_no});
    if (notes.isEmpty()) refuse(QStringLiteral(" Aucun Bon Livraison à facturer pour ce client"));
    return notes;
}

namespace {

void take(SalesBook& invoices, const Record& asRead, const QString& number) {
    const Record invoice = documents::requireOpen(invoices, asRead);
    const QString year = invoice[strface.fac_aa];
    const QString invoiceNumber = invoice[strface.fac_no];
    const Record note = integrable(invoices, invoice, number);
    const QList<Record> lines = invoices.vente.all(strlivl, numbering::linesOf(strlivl, note[strlive.fac_aa], number),
                                                   {strlivl.fac_no, strlivl.fac_lg});
    if (lines.isEmpty()) refuse(QStringLiteral("Aucune ligne sur ce Bon"));
    const int taken =
        invoices.vente.greatest(strfacl, strfacl.fac_lg, numbering::linesOf(strfacl, year, invoiceNumber)).toInt();
    if (taken + lines.size() > numbering::LastLine)
        refuse(QStringLiteral("Impossible d'intégrer ce BL, trop de lignes ..."));

    numbering::addHiddenLine(invoices.vente, strfacl, year, invoiceNumber, number);
    int next = taken + 1;
    QList<Record> copies;
    for (const Record& line : lines) {
        Record copy = document_lines::copyOf(line, strfacl);
        copy[strfacl.fac_aa] = year;
        copy[strfacl.fac_no] = invoiceNumber;
        copy[strfacl.fac_lg] = numbering::lineKey(next++);
        copy[strfacl.fac_nbl] = number;
        copies.append(copy);
    }
    invoices.vente.insert(copies);
    unit_moves::sell(invoices, invoice, note, lines);
    invoices.vente.update(strlive, {{strlive.fac_blv, invoiceNumber}, {strlive.fac_cpt, documents::Transferred}},
                          strlive.fac_no == number && strlive.fac_aa == note[strlive.fac_aa]);
    documents::refreshTotals(invoices, invoice);
}

} // namespace

void integrate(SalesBook& invoices, const Record& asRead, const QString& deliveryNote) {
    const QString number = padded(deliveryNote, 6);
    SalesBook notes(invoices, documentKind(QStringLiteral("LIV")));
    QStringList locks{document_locks::document(invoices, asRead)};
    if (const auto note = noteOf(invoices, number)) locks.append(document_locks::document(notes, *note));
    Transaction::run(invoices.workspace, QStringLiteral("Intégration d'un bon de livraison"), Locks::of(locks),
                     [&] { take(invoices, asRead, number); });
}

namespace {

void reopen(SalesBook& invoices, const Record& invoice, const Record& note) {
    const QString number = note[strlive.fac_no];
    SalesBook notes(invoices, documentKind(QStringLiteral("LIV")));
    const QList<Record> lines = documents::linesRead(notes, note);
    Transaction transaction(invoices.workspace, {}, document_locks::ofStanding(notes, note, lines));
    invoices.vente.update(strlive, {{strlive.fac_blv, documents::NotInvoiced}, {strlive.fac_cpt, documents::Open}},
                          strlive.fac_no == number && strlive.fac_aa == note[strlive.fac_aa]);
    // The hidden record of the note goes too, but a document with lines keeps one.
    invoices.vente.remove(strfacl, strfacl.fac_no == invoice[strface.fac_no] &&
                                       strfacl.fac_aa == invoice[strface.fac_aa] &&
                                       strfacl.fac_lg == numbering::HiddenLine && strfacl.fac_nbl == number);
    if (!documents::lines(invoices, invoice).isEmpty())
        numbering::addHiddenLine(invoices.vente, strfacl, invoice[strface.fac_aa], invoice[strface.fac_no]);
    // What the invoice gave back when its lines were deleted is delivered again.
    for (const Record& line : lines)
        if (line[strlivl.fac_imm].isEmpty())
            document_lines::takeFromStock(invoices, line[strlivl.fac_ref], line[strlivl.fac_qte]);
        else
            unit_moves::deliverAgain(invoices, note, line);
    transaction.commit();
}

} // namespace

void release(SalesBook& invoices, const Record& invoice, const QStringList& deliveryNotes) {
    const QString invoiceNumber = invoice[strface.fac_no];
    for (const QString& number : deliveryNotes) {
        if (number.isEmpty() ||
            invoices.vente.count(strfacl, documents::linesOf(invoices, invoice) && strfacl.fac_nbl == number) > 0)
            continue;
        const Criterion taken = strlive.fac_no == number && strlive.fac_blv == invoiceNumber;
        if (const auto note = invoices.vente.find(strlive, taken, Order::descending(strlive.fac_aa)))
            reopen(invoices, invoice, *note);
        else if (invoices.historic.count(strlive, taken) > 0)
            throw Refusal(QStringLiteral("Le bon de livraison %1 est archivé : le réactualiser d'abord").arg(number),
                          strfacl.fac_nbl.name);
    }
}

} // namespace molven::integration

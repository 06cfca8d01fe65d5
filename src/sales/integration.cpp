#include "sales/integration.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/numbering.h"
#include "stock/units.h"

namespace molven::integration {

namespace {

[[noreturn]] void refuse(const QString& message) { throw Refusal(message, QStringLiteral("txtchoix")); }

Record integrable(SalesBook& invoices, const Record& invoice, const QString& number) {
    const QString client = invoice[strface.fac_clt];
    const auto note = invoices.vente.find(strlive, strlive.fac_no == number, Order::descending(strlive.fac_aa));
    if (!note) refuse(QStringLiteral("Ce Bon de Livraison n'existe pas"));
    const Record& read = *note;
    if (read[strlive.fac_clt] != client)
        refuse(QStringLiteral("Ce Bon de Livraison est au client : ") + read[strlive.fac_clt]);
    if (read[strlive.fac_cpt] == documents::Transferred) refuse(QStringLiteral("Ce bon de Livraison a été facturé"));
    return *note;
}

/// A unit delivered by the note is now sold by the invoice.
void sell(SalesBook& invoices, const Record& invoice, const QString& unit, const QString& note,
          const QString& reference) {
    const QString number = invoice[strface.fac_no];
    invoices.molven.update(strproduit,
                           {{strproduit.tes_vte, state::Sold},
                            {strproduit.num_vte, number},
                            {strproduit.nbl_dep, number},
                            {strproduit.dat_vte, invoice[strface.fac_datf]},
                            {strproduit.tri_vte, invoice[strface.tri_datf]},
                            {strproduit.ref_vte, QStringLiteral("BL/") + note}},
                           Immatriculation::fromText(unit).criterion());
    articles::moveStock(invoices.molven, reference, Decimal(-1));
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

void integrate(SalesBook& invoices, const Record& invoice, const QString& deliveryNote) {
    const QString number = padded(deliveryNote, 6);
    const QString year = invoice[strface.fac_aa];
    const QString invoiceNumber = invoice[strface.fac_no];
    Transaction transaction(invoices.workspace, QStringLiteral("Intégration d'un bon de livraison"));
    documents::requireOpen(invoices, invoice);
    const Record note = integrable(invoices, invoice, number);
    Recordset lines = invoices.vente.select(strlivl, numbering::linesOf(strlivl, note[strlive.fac_aa], number),
                                            {strlivl.fac_no, strlivl.fac_lg});
    if (lines.isEmpty()) refuse(QStringLiteral("Aucune ligne sur ce Bon"));
    const int taken =
        invoices.vente.greatest(strfacl, strfacl.fac_lg, numbering::linesOf(strfacl, year, invoiceNumber)).toInt();
    if (taken + lines.count() > numbering::LastLine)
        refuse(QStringLiteral("Impossible d'intégrer ce BL, trop de lignes ..."));

    numbering::addHiddenLine(invoices.vente, strfacl, year, invoiceNumber, number);
    for (int next = taken + 1; !lines.eof(); lines.moveNext()) {
        Record copy = document_lines::copyOf(lines.record(), strfacl);
        copy[strfacl.fac_aa] = year;
        copy[strfacl.fac_no] = invoiceNumber;
        copy[strfacl.fac_lg] = numbering::lineKey(next++);
        copy[strfacl.fac_nbl] = number;
        invoices.vente.insert(copy);
        if (const QString unit = copy[strfacl.fac_imm]; !unit.isEmpty())
            sell(invoices, invoice, unit, number, copy[strfacl.fac_ref]);
    }
    invoices.vente.update(strlive, {{strlive.fac_blv, invoiceNumber}, {strlive.fac_cpt, documents::Transferred}},
                          strlive.fac_no == number && strlive.fac_aa == note[strlive.fac_aa]);
    documents::refreshTotals(invoices, invoice);
    transaction.commit();
}

} // namespace molven::integration

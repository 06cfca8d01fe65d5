#include "sales/documents.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/lines.h"
#include "sales/numbering.h"
#include "sales/totals.h"

namespace molven::documents {

namespace {

Criterion sameDocument(const DocumentHeaders& table, const Record& header) {
    return table.fac_no == header[table.fac_no] && table.fac_aa == header[table.fac_aa];
}

void require(bool held, const char* message, const Field& field) {
    if (!held) throw Refusal(QString::fromUtf8(message), field.name);
}

} // namespace

std::optional<Record> find(SalesBook& book, const QString& number) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, table.fac_no == padded(number, 6), Order::descending(table.fac_aa));
}

std::optional<Record> last(SalesBook& book) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, {}, Order::descending(table.fac_no));
}

std::optional<Record> before(SalesBook& book, const QString& number) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, table.fac_no < padded(number, 6), Order::descending(table.fac_no));
}

std::optional<Record> after(SalesBook& book, const QString& number) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, table.fac_no > padded(number, 6), table.fac_no);
}

QString depotOf(const Record& client) {
    const QString depot = client[strclient.clt_dep];
    return depot.isEmpty() ? MainDepot : depot;
}

Record blank(SalesBook& book, const QString& code) {
    const DocumentHeaders& table = book.kind().headers;
    const auto found = parties::findClient(book.molven, code);
    require(found.has_value(), "Ce code n'existe pas", table.fac_clt);
    const Record& client = *found;
    const bool invoicing = book.kind().isInvoice() || book.kind().isCredit;
    require(!invoicing || client[strclient.clt_fac] != u"N", "Ce client n'a pas d'autorisation de facturation",
            table.fac_clt);

    Record header(table);
    header[table.fac_clt] = client[strclient.clt_cod];
    header[table.fac_nom] = client[strclient.clt_nom];
    header[table.fac_l1] = client[strclient.clt_l1];
    header[table.fac_l2] = client[strclient.clt_l2];
    header[table.fac_l3] = client[strclient.clt_l3];
    header[table.fac_l4] = client[strclient.clt_l4];
    header[table.fac_l5] = client[strclient.clt_l5];
    header[table.fac_rep] = client[strclient.clt_rep];
    header[table.fac_exp] = client[strclient.clt_exp];
    header[table.fac_trs] = client[strclient.clt_exp];
    header[table.fac_rglt] = client[strclient.clt_rgt];
    header[table.fac_clm] = client[strclient.clt_memo];
    header[table.fac_dep] = book.kind().isCredit ? MainDepot : depotOf(client);
    header[table.fac_mon] = QStringLiteral("EUR");
    header[table.fac_datf] = dateText(Clock::today());
    return header;
}

namespace {

void check(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    require(!header[table.fac_clt].isEmpty(), "Client obligatoire", table.fac_clt);
    const QDate date = dateFromText(header[table.fac_datf]);
    require(date.isValid(), "Date invalide", table.fac_datf);
    const QString order = header[table.fac_datc];
    require(isEmptyDate(order) || dateFromText(order).isValid(), "Date invalide", table.fac_datc);
    require(isEmptyDate(order) || dateFromText(order) <= date, "Date commande > date du document", table.fac_datc);
    require(book.molven.count(strmonnaie, strmonnaie.mon_cle == header[table.fac_mon]) > 0, "Monnaie inconnue",
            table.fac_mon);
    const QString surgeon = header[table.fac_chr];
    require(surgeon.isEmpty() || parameters::find(book.molven, list::Surgeon, surgeon), "Ce code n'existe pas",
            table.fac_chr);
    const QString dispatch = header[table.fac_trs];
    require(dispatch.isEmpty() || parameters::find(book.molven, list::Dispatch, dispatch), "Ce code n'existe pas",
            table.fac_trs);
    require(parameters::find(book.molven, list::Depot, header[table.fac_dep]).has_value(), "Dépôt inconnu",
            table.fac_dep);
}

void keepDeliveryAddress(SalesBook& book, const QString& client, const QStringList& address) {
    if (address.isEmpty()) return;
    Record kept(strbl);
    kept[strbl.bl_cod] = client;
    const Label* fields[] = {&strbl.bl_l1, &strbl.bl_l2, &strbl.bl_l3, &strbl.bl_l4, &strbl.bl_l5};
    for (int i = 0; i < 5; ++i) kept[*fields[i]] = address.value(i);
    book.blent.remove(strbl, strbl.bl_cod == client);
    book.blent.insert(kept);
}

void setDueDate(SalesBook& book, Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    const Record& read = header;
    const auto mode = parameters::paymentMode(book.molven, read[table.fac_rglt]);
    require(mode || read[table.fac_rglt].isEmpty(), "mode reglement inconnu", table.fac_rglt);
    if (mode) header[table.fac_ech] = parameters::dueDate(*mode, dateFromText(read[table.fac_datf]));
}

} // namespace

Record create(SalesBook& book, Record header, const QStringList& deliveryAddress) {
    const DocumentHeaders& table = book.kind().headers;
    const Record& read = header;
    Transaction transaction(book.workspace, QStringLiteral("Création du document"));
    check(book, header);
    header[table.fac_aa] = read[table.fac_datf].right(4);
    header[table.fac_no] = numbering::next(book.vente, table);
    header[table.fac_lg] = HeaderKey;
    header[table.fac_cpt] = Open;
    header[table.fac_blv] = NotInvoiced;
    header[table.tri_datf] = sortKey(read[table.fac_datf]);
    setDueDate(book, header);
    totals::compute(book, header);
    book.vente.insert(header);
    keepDeliveryAddress(book, read[table.fac_clt], deliveryAddress);
    transaction.commit();
    return header;
}

void requireOpen(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    const auto stored = book.vente.find(table, sameDocument(table, header));
    require(stored.has_value(), "N° inconnu", table.fac_no);
    require(std::as_const(*stored)[table.fac_cpt] != Transferred, "Document transféré non modifiable", table.fac_no);
}

namespace {

/// Copies these fields of `header` into the stored one, with its totals computed anew.
Record rewrite(SalesBook& book, const Record& header, const QList<const Field*>& fields) {
    const DocumentHeaders& table = book.kind().headers;
    Transaction transaction(book.workspace, QStringLiteral("Modification de l'en-tête"));
    requireOpen(book, header);
    Recordset stored = book.vente.select(table, sameDocument(table, header));
    stored.edit();
    Record& written = stored.draft();
    for (const Field* field : fields) written.set(*field, header.value(*field));
    check(book, written);
    setDueDate(book, written);
    totals::compute(book, written);
    const Record result = written;
    stored.update();
    transaction.commit();
    return result;
}

} // namespace

Record change(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    return rewrite(book, header, {&table.fac_chr, &table.fac_trs, &table.fac_btr, &table.fac_pat});
}

Record changeFooter(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    for (const Number* percent : {&table.fac_rem, &table.fac_esc})
        require(!(header[*percent] < Decimal(0)) && !(header[*percent] > Decimal(100)), "Remise incorrecte", *percent);
    return rewrite(book, header,
                   {&table.fac_rem, &table.fac_esc, &table.fac_acpt, &table.fac_port, &table.fac_exo, &table.fac_rglt,
                    &table.fac_fco, &table.fac_mes});
}

Record refreshTotals(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    Recordset stored = book.vente.select(table, sameDocument(table, header));
    stored.edit();
    totals::compute(book, stored.draft());
    const Record result = stored.draft();
    stored.update();
    return result;
}

void requireDeletable(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    require(book.kind().isDeletable, "Impossible de supprimer une Facture ou un Avoir ou un bon consignation",
            table.fac_no);
    const auto stored = book.vente.find(table, sameDocument(table, header));
    require(stored.has_value(), "N° inconnu", table.fac_no);
    require(std::as_const(*stored)[table.fac_cpt] != Transferred, "Bon Livraison facturé !!! impossible", table.fac_no);
}

void remove(SalesBook& book, const Record& header) {
    Transaction transaction(book.workspace, QStringLiteral("Suppression du document"));
    requireDeletable(book, header);
    abandon(book, header);
    transaction.commit();
}

void abandon(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    const DocumentLines& lineTable = book.kind().lines;
    Transaction transaction(book.workspace, QStringLiteral("Abandon du document"));
    requireOpen(book, header);
    for (const Record& line : lines(book, header)) document_lines::undo(book, header, line);
    book.vente.remove(lineTable, lineTable.fac_no == header[table.fac_no] && lineTable.fac_aa == header[table.fac_aa]);
    book.vente.remove(table, sameDocument(table, header));
    transaction.commit();
}

Criterion linesOf(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    return numbering::linesOf(book.kind().lines, header[table.fac_aa], header[table.fac_no]);
}

Recordset lines(SalesBook& book, const Record& header) {
    const DocumentLines& lineTable = book.kind().lines;
    return book.vente.select(lineTable, linesOf(book, header), {lineTable.fac_no, lineTable.fac_lg});
}

Recordset ofClient(SalesBook& book, const QString& client) {
    const DocumentHeaders& table = book.kind().headers;
    Recordset found = book.vente.select(table, table.fac_clt == padded(client, 6), {table.tri_datf, table.fac_no});
    if (found.isEmpty()) throw Refusal(QStringLiteral(" Aucun document pour ce client"), table.fac_clt.name);
    return found;
}

} // namespace molven::documents

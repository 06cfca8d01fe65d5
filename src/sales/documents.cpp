#include "sales/documents.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_locks.h"
#include "sales/integration.h"
#include "sales/lines.h"
#include "sales/numbering.h"
#include "sales/proformas.h"
#include "sales/station.h"
#include "sales/totals.h"
#include "sales/transfer_notes.h"
#include "sales/unit_moves.h"
#include "sales/unit_rules.h"

#include <QUuid>

#include <algorithm>

namespace molven::documents {

namespace {

const QString CreationDeed = QStringLiteral("Création du document");

Criterion numbered(const DocumentHeaders& table, const Record& header) {
    return table.fac_no == header[table.fac_no] && table.fac_aa == header[table.fac_aa];
}

/// Two readings of one document; those of old have no drawn key and are told by client and date.
bool isSame(const DocumentHeaders& table, const Record& a, const Record& b) {
    return a[table.fac_uid] == b[table.fac_uid] && a[table.fac_clt] == b[table.fac_clt] &&
           a[table.fac_datf] == b[table.fac_datf];
}

bool isArchived(SalesBook& book, const Record& asRead) {
    const DocumentHeaders& table = book.kind().headers;
    if (book.kind().file != DataFile::Vente) return false;
    const auto archived = book.historic.find(table, numbered(table, asRead));
    return archived && isSame(table, *archived, asRead);
}

} // namespace

bool isOfKind(const DocumentKind& kind, const Record& header) {
    if (kind.isProforma()) return true;
    const QString mode = header[kind.headers.fac_mode];
    return mode.isEmpty() ? (header[kind.headers.fac_ht] < Decimal()) == kind.isCredit : mode == kind.mode;
}

Criterion ofKind(const DocumentKind& kind) {
    const DocumentHeaders& table = kind.headers;
    const auto inSeries = [&kind](const DocumentKind& other) { return other.sharesSeries(kind); };
    if (std::count_if(documentKinds().begin(), documentKinds().end(), inSeries) == 1) return {};
    const Criterion negative = table.fac_ht < QStringLiteral("0");
    const Criterion ofOld = table.fac_mode == QString() && (kind.isCredit ? negative : !negative);
    return table.fac_mode == kind.mode || ofOld;
}

Criterion ofKind(SalesBook& book) { return ofKind(book.kind()); }

namespace {

void requireKind(const DocumentKind& kind, const Record& header) {
    if (isOfKind(kind, header)) return;
    for (const DocumentKind& other : documentKinds())
        if (other.sharesSeries(kind) && isOfKind(other, header))
            throw Refusal(QStringLiteral("Ce N° est ") + other.whereabouts, kind.headers.fac_no.name);
}

} // namespace

std::optional<Record> find(SalesBook& book, const QString& number) {
    const DocumentHeaders& table = book.kind().headers;
    const auto found = book.vente.find(table, table.fac_no == padded(number, 6), Order::descending(table.fac_aa));
    if (found) requireKind(book.kind(), *found);
    return found;
}

QString depotOf(const Record& client) {
    const QString depot = client[strclient.clt_dep];
    return depot.isEmpty() ? MainDepot : depot;
}

namespace {

using AddressLines = QList<const Label*>;

void copyAddress(const Record& from, const AddressLines& lines, Record& to, const AddressLines& into) {
    for (qsizetype i = 0; i < into.size(); ++i) to[*into[i]] = from[*lines[i]];
}

AddressLines postalLines() {
    return {&strclient.clt_l1, &strclient.clt_l2, &strclient.clt_l3, &strclient.clt_l4, &strclient.clt_l5};
}

AddressLines deliveryLines() {
    return {&strclient.clt_liv1, &strclient.clt_liv2, &strclient.clt_liv3, &strclient.clt_liv4, &strclient.clt_liv5};
}

/// What a sale takes over from its client; a transfer has no use for it.
void presetSale(SalesBook& book, const Record& client, Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    copyAddress(client, postalLines(), header, table.address());
    header[table.fac_rep] = client[strclient.clt_rep];
    header[table.fac_exp] = client[strclient.clt_exp];
    header[table.fac_rglt] = client[strclient.clt_rgt];
    header[table.fac_clm] = client[strclient.clt_memo];
}

} // namespace

QString euroOf(SalesBook& book, const QString& currency) {
    const auto found = parameters::currency(book.molven, currency);
    return found ? shown((*found)[strmonnaie.mon_euro]) : QString();
}

Record blank(SalesBook& book) {
    const Reading together(book.workspace);
    const DocumentHeaders& table = book.kind().headers;
    Record header(table);
    header[table.fac_datf] = dateText(Clock::today());
    if (!book.kind().isPriced) return header;
    const QString currency = parameters::companyCurrency(book.molven, book.companyCurrency());
    header[table.fac_mon] = currency;
    header[table.fac_eur] = euroOf(book, currency);
    return header;
}

Record blank(SalesBook& book, const QString& code) {
    const Reading together(book.workspace);
    parameters::foreseeCurrency(book.molven, book.companyCurrency());
    const DocumentHeaders& table = book.kind().headers;
    const auto found = parties::findClient(book.molven, code);
    require(found.has_value(), "Ce code n'existe pas", table.fac_clt);
    const Record& client = *found;
    require(!book.kind().isInvoicing() || client[strclient.clt_fac] != u"N",
            "Ce client n'a pas d'autorisation de facturation", table.fac_clt);
    Record header = blank(book);
    header[table.fac_clt] = client[strclient.clt_cod];
    header[table.fac_nom] = client[strclient.clt_nom];
    header[table.fac_trs] = client[strclient.clt_exp];
    header[book.kind().depot] = book.kind().isCredit ? MainDepot : depotOf(client);
    if (book.kind().isTransfer())
        copyAddress(client, deliveryLines(), header, table.address());
    else
        presetSale(book, client, header);
    return header;
}

Record presetDeliveryAddress(const Record& client) {
    Record address(strbl);
    copyAddress(client, deliveryLines(), address, strbl.address());
    return address;
}

Record deliveryAddress(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    Record address(strbl);
    if (book.kind().isTransfer())
        copyAddress(header, table.address(), address, strbl.address());
    else if (const auto kept = book.blent.find(strbl, strbl.bl_cod == header[table.fac_clt]))
        address = *kept;
    return address;
}

namespace {

void checkCode(SalesBook& book, const Record& header, const Text& field, const QString& letter) {
    const QString code = header[field];
    require(code.isEmpty() || parameters::find(book.molven, letter, code), "Ce code n'existe pas", field);
}

void checkSale(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    parameters::foresee(book.molven, {{list::Surgeon, header[table.fac_chr]},
                                      {list::Dispatch, header[table.fac_trs]},
                                      {list::Depot, header[table.fac_dep]}});
    parameters::foreseePaymentMode(book.molven, header[table.fac_rglt]);
    require(!header[table.fac_clt].isEmpty(), "Client obligatoire", table.fac_clt);
    const QDate date = dateFromText(header[table.fac_datf]);
    require(date.isValid(), "Date invalide", table.fac_datf);
    const QString order = header[table.fac_datc];
    require(isEmptyDate(order) || dateFromText(order).isValid(), "Date invalide", table.fac_datc);
    require(isEmptyDate(order) || dateFromText(order) <= date, "Date commande > date du document", table.fac_datc);
    require(parameters::currency(book.molven, header[table.fac_mon]).has_value(), "Monnaie inconnue", table.fac_mon);
    checkCode(book, header, table.fac_chr, list::Surgeon);
    checkCode(book, header, table.fac_trs, list::Dispatch);
    require(parameters::find(book.molven, list::Depot, header[table.fac_dep]).has_value(), "Dépôt inconnu",
            table.fac_dep);
}

/// A sale keeps the address under its client, a transfer on itself.
void keepDeliveryAddress(SalesBook& book, Record& header, const Record& address) {
    const DocumentHeaders& table = book.kind().headers;
    if (book.kind().isTransfer()) return copyAddress(address, strbl.address(), header, table.address());
    Record kept = address;
    const QString client = header.value(table.fac_clt);
    kept[strbl.bl_cod] = client;
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

namespace {

Record written(SalesBook& book, Record header, const std::optional<Record>& deliveryAddress) {
    const DocumentHeaders& table = book.kind().headers;
    const Record& read = header;
    numbering::foresee(book.series(), table);
    if (book.kind().isTransfer())
        transfer_notes::check(book, header);
    else
        checkSale(book, header);
    header[table.fac_aa] = read[table.fac_datf].right(4);
    header[table.fac_no] = numbering::next(book.series(), table);
    header[table.fac_lg] = HeaderKey;
    header[table.fac_cpt] = Open;
    header[table.fac_blv] = NotInvoiced;
    header[table.fac_mode] = book.kind().mode;
    header[table.fac_uid] = QUuid::createUuid().toString(QUuid::Id128);
    header[table.fac_pst] = station::current();
    header[table.tri_datf] = sortKey(read[table.fac_datf]);
    if (deliveryAddress) keepDeliveryAddress(book, header, *deliveryAddress);
    if (book.kind().isTransfer()) transfer_notes::complete(header);
    if (book.kind().isPriced) {
        setDueDate(book, header);
        totals::compute(book, header);
    }
    book.vente.insert(header);
    return header;
}

} // namespace

Record create(SalesBook& book, const Record& header, const std::optional<Record>& deliveryAddress) {
    return Transaction::run(book.workspace, CreationDeed, document_locks::ofNew(book, header),
                            [&] { return written(book, header, deliveryAddress); });
}

Record createWith(SalesBook& book, const Record& header, const QStringList& units,
                  const std::optional<Record>& deliveryAddress) {
    return Transaction::run(book.workspace, CreationDeed, document_locks::ofNewWith(book, header, units), [&] {
        const Record made = create(book, header, deliveryAddress);
        document_lines::addToNew(book, made,
                                 document_lines::ofUnits(book, made, unit_rules::checkAll(book, made, units)));
        return current(book, made);
    });
}

Record current(SalesBook& book, const Record& asRead) {
    const DocumentHeaders& table = book.kind().headers;
    const QString number = asRead[table.fac_no];
    if (number.isEmpty()) throw Refusal(QStringLiteral("N° inconnu"), table.fac_no.name);
    const auto stored = book.vente.find(table, numbered(table, asRead));
    if (!stored)
        throw ChangedElsewhere((isArchived(book, asRead)
                                    ? QStringLiteral("Le document %1 a été archivé par un autre poste")
                                    : QStringLiteral("Le document %1 a été supprimé ou renuméroté "
                                                     "par un autre poste"))
                                   .arg(number),
                               table.fac_no.name);
    if (!isSame(table, *stored, asRead))
        throw ChangedElsewhere(
            QStringLiteral("Le document %1 a été supprimé par un autre poste : ce N° est "
                           "maintenant un document du %2 pour %3 %4")
                .arg(number, stored->value(table.fac_datf), stored->value(table.fac_clt), stored->value(table.fac_nom)),
            table.fac_no.name);
    requireKind(book.kind(), *stored);
    return *stored;
}

Record requireOpen(SalesBook& book, const Record& asRead) {
    const DocumentHeaders& table = book.kind().headers;
    const Record stored = current(book, asRead);
    require(stored[table.fac_cpt] != Transferred, "Document transféré non modifiable", table.fac_no);
    return stored;
}

namespace {

QList<WatchedField> footerFields(const DocumentHeaders& table) {
    return {
        {&table.fac_rem, "La remise a été modifiée"},           {&table.fac_esc, "L'escompte a été modifié"},
        {&table.fac_acpt, "L'acompte a été modifié"},           {&table.fac_port, "Le port a été modifié"},
        {&table.fac_exo, "Le montant exonéré a été modifié"},   {&table.fac_rglt, "Le mode de règlement a été modifié"},
        {&table.fac_fco, "L'indicateur de pied a été modifié"}, {&table.fac_mes, "Le message a été modifié"}};
}

/// The document's own record, to be changed in the caller's transaction.
Recordset writable(SalesBook& book, const Record& stored) {
    const DocumentHeaders& table = book.kind().headers;
    Recordset record = book.vente.select(table, numbered(table, stored));
    record.edit();
    return record;
}

/// Copies the watched fields of `header` into the stored one, which must hold in them what the user read; what the
/// fields imply is checked and computed by `finish`.
template <class Finish>
Record rewrite(SalesBook& book, const Record& header, const Record& asRead, const QList<WatchedField>& fields,
               const Finish& finish) {
    const Locks locks = Locks::of({document_locks::document(book, asRead)});
    return Transaction::run(book.workspace, QStringLiteral("Modification de l'en-tête"), locks, [&] {
        const Record stored = requireOpen(book, asRead);
        requireUnchanged(stored, asRead, fields);
        Recordset record = writable(book, stored);
        Record& changed = record.draft();
        for (const WatchedField& watched : fields) changed.set(*watched.field, header.value(*watched.field));
        finish(stored, changed);
        const Record result = changed;
        record.update();
        return result;
    });
}

void checkPercents(const DocumentHeaders& table, const Record& header) {
    for (const Number* percent : {&table.fac_rem, &table.fac_esc})
        require(header[*percent] >= Decimal(0) && header[*percent] <= Decimal(100), "Remise incorrecte", *percent);
}

/// What an amount box holds at most, "#####0.00".
const Decimal& greatestAmount() {
    static const Decimal amount = Decimal::fromText(QStringLiteral("999999.99"));
    return amount;
}

/// A credit note may give carriage and exempt amounts back.
void checkAmounts(const DocumentKind& kind, const Record& header) {
    const Decimal least = kind.isCredit ? -greatestAmount() : Decimal(0);
    for (const Number* amount : {&kind.headers.fac_port, &kind.headers.fac_exo})
        require(header[*amount] >= least && header[*amount] <= greatestAmount(), "Montant incorrect", *amount);
}

} // namespace

void requireDownPaymentWithin(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    const Decimal paid = header[table.fac_acpt];
    require(paid >= Decimal(0), "Montant incorrect", table.fac_acpt);
    require(paid.isZero() || paid <= header[table.fac_ttc], "Acompte supérieur au total du document", table.fac_acpt);
}

Record change(SalesBook& book, const Record& header, const Record& asRead) {
    const DocumentHeaders& table = book.kind().headers;
    return rewrite(book, header, asRead, book.kind().open, [&](const Record& stored, const Record& written) {
        // A code that was deleted since stays on the documents that have it.
        for (const auto& [field, letter] :
             {std::pair(&table.fac_chr, list::Surgeon), std::pair(&table.fac_trs, list::Dispatch)})
            if (written[*field] != stored[*field]) checkCode(book, written, *field, letter);
        if (written[table.fac_pat] != stored[table.fac_pat]) unit_moves::correctPatient(book, stored, written);
    });
}

Record changeFooter(SalesBook& book, const Record& header, const Record& asRead) {
    const DocumentHeaders& table = book.kind().headers;
    checkPercents(table, header);
    checkAmounts(book.kind(), header);
    return rewrite(book, header, asRead, footerFields(table), [&](const Record& stored, Record& written) {
        if (written.value(table.fac_rglt) != stored[table.fac_rglt]) setDueDate(book, written);
        totals::compute(book, written);
        requireDownPaymentWithin(book, written);
    });
}

Record refreshTotals(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    Recordset record = writable(book, header);
    if (book.kind().isPriced) totals::compute(book, record.draft());
    record[table.fac_pst] = QString();
    const Record result = record.draft();
    record.update();
    return result;
}

void requireDeletable(SalesBook& book, const Record& asRead) {
    const DocumentHeaders& table = book.kind().headers;
    require(book.kind().isDeletable, book.kind().notDeletable, table.fac_no);
    require(current(book, asRead)[table.fac_cpt] != Transferred, book.kind().transferredWords, table.fac_no);
}

namespace {

/// Undoes these, all its lines, and what the document did to others; it is deleted.
void erase(SalesBook& book, const Record& header, const QList<Record>& all) {
    const DocumentLines& lineTable = book.kind().lines;
    QStringList notes;
    for (const Record& line : all) {
        document_lines::undo(book, header, line);
        if (const QString note = line[lineTable.fac_nbl]; !notes.contains(note)) notes.append(note);
    }
    book.vente.remove(lineTable, lineTable.fac_no == header[book.kind().headers.fac_no] &&
                                     lineTable.fac_aa == header[book.kind().headers.fac_aa]);
    if (book.kind().isInvoice()) integration::release(book, header, notes);
    if (book.kind().isTransfer()) transfer_notes::release(book, header);
    if (book.kind().isDelivery()) proformas::release(book, header);
    book.vente.remove(book.kind().headers, numbered(book.kind().headers, header));
}

} // namespace

void remove(SalesBook& book, const Record& asRead, const QList<Record>& linesAsRead) {
    const DocumentHeaders& table = book.kind().headers;
    const Locks locks = document_locks::ofStanding(book, asRead, linesAsRead);
    Transaction::run(book.workspace, QStringLiteral("Suppression du document"), locks, [&] {
        requireDeletable(book, asRead);
        const Record stored = current(book, asRead);
        requireUnchanged(stored, asRead, book.kind().open + footerFields(table));
        if (linesRead(book, stored) != linesAsRead)
            throw ChangedElsewhere(QStringLiteral("Les lignes ont été modifiées par un autre poste"),
                                   table.fac_no.name);
        erase(book, stored, linesAsRead);
    });
}

void abandon(SalesBook& book, const Record& asRead) {
    const Locks locks = document_locks::ofStanding(book, asRead, linesRead(book, asRead));
    Transaction::run(book.workspace, QStringLiteral("Abandon du document"), locks, [&] {
        const Record header = requireOpen(book, asRead);
        const QList<Record> all = linesRead(book, header);
        Transaction ofAll(book.workspace, {}, document_locks::ofUnits(book.kind(), all));
        erase(book, header, all);
        ofAll.commit();
    });
}

Record keep(SalesBook& book, const Record& asRead) {
    const Locks locks = Locks::of({document_locks::document(book, asRead)});
    return Transaction::run(book.workspace, QStringLiteral("Document conservé sans ligne"), locks, [&] {
        Recordset record = writable(book, current(book, asRead));
        record[book.kind().headers.fac_pst] = QString();
        const Record result = record.draft();
        record.update();
        numbering::addHiddenLine(book.vente, book.kind().lines, result[book.kind().headers.fac_aa],
                                 result[book.kind().headers.fac_no]);
        return result;
    });
}

} // namespace molven::documents

#include "sales/transfer_notes.h"

#include "data/dates.h"
#include "data/require.h"
#include "reference/parameters.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "stock/units.h"

namespace molven::transfer_notes {

namespace {

const QString NotRenewed = QStringLiteral("N000000");
const QString Renewed = QStringLiteral("T");

bool isDepot(SalesBook& book, const QString& code) {
    return parameters::find(book.molven, list::Depot, code).has_value();
}

bool liesThere(SalesBook& book, const Record& note, const Record& line) {
    if (line[strbtrl.fac_imm].isEmpty()) return false;
    const auto unit = units::find(book.molven, Immatriculation::fromText(line[strbtrl.fac_imm]));
    return unit && unit->value(strproduit.tes_vte) == state::InStock &&
           unit->value(strproduit.num_dep) == note[strbtre.fac_depa];
}

const char* const SetsApart = "Dépôt des ancillaires : envoi et retour se font sur la fiche des ancillaires";

} // namespace

bool isOfSet(const Record& header) {
    const QString from = header[strbtre.fac_depd], to = header[strbtre.fac_depa], client = header[strbtre.fac_clt];
    return (from == SetDepot && to == client) || (to == SetDepot && from == client);
}

void check(SalesBook& book, const Record& header) {
    const QString from = header[strbtre.fac_depd], to = header[strbtre.fac_depa], dispatch = header[strbtre.fac_trs];
    require(!header[strbtre.fac_clt].isEmpty(), "Client obligatoire", strbtre.fac_clt);
    require(!from.isEmpty(), "Dépôt de sortie obligatoire", strbtre.fac_depd);
    require(dateFromText(header[strbtre.fac_datf]).isValid(), "Date invalide", strbtre.fac_datf);
    require(from != to, "dépôt initial = dépôt du client", strbtre.fac_depa);
    if (!isOfSet(header) || !header[strbtre.fac_btr].contains(SetLabel)) {
        require(from != SetDepot, SetsApart, strbtre.fac_depd);
        require(to != SetDepot, SetsApart, strbtre.fac_depa);
        require(isDepot(book, from), "Dépôt inconnu", strbtre.fac_depd);
        require(isDepot(book, to), "Dépôt inconnu", strbtre.fac_depa);
    }
    require(dispatch.isEmpty() || parameters::find(book.molven, list::Dispatch, dispatch), "Ce code n'existe pas",
            strbtre.fac_trs);
}

void complete(Record& header) {
    header[strbtre.fac_dat] = header.value(strbtre.fac_datf);
    header[strbtre.fac_eta] = NotRenewed;
}

Record write(SalesBook& book, const Record& header, const QStringList& units,
             const std::optional<Record>& deliveryAddress) {
    return Transaction::run(book.workspace, QStringLiteral("Transfert"), document_locks::ofNewWith(book, header, units),
                            [&] { return documents::createWith(book, header, units, deliveryAddress); });
}

QString renewedOn(const Record& note) {
    const QString noted = note[strbtre.fac_eta];
    return noted.startsWith(Renewed) ? noted.mid(Renewed.size()) : QString();
}

void requireRenewable(SalesBook& book, const Record& note) {
    if (const QString number = renewedOn(note); !number.isEmpty())
        throw Refusal(QStringLiteral("Ce Bon a été transféré sur le Bon N° : ") + number, strbtre.fac_no.name);
    require(!remaining(book, note).isEmpty(), "Aucune immatriculation disponible dans le dépôt", strbtre.fac_no);
}

QList<Record> remaining(SalesBook& book, const Record& note) {
    QList<Record> lines;
    for (const Record& line : documents::lines(book, note))
        if (liesThere(book, note, line)) lines.append(line);
    return lines;
}

Record renewal(SalesBook& book, const Record& note, const QString& client) {
    Record header = documents::blank(book, client);
    const bool sameClient = header.value(strbtre.fac_clt) == note[strbtre.fac_clt];
    const bool isHome = note[strbtre.fac_depa] == MainDepot;
    if (sameClient && !isHome) header[strbtre.fac_depa] = MainDepot;
    header[strbtre.fac_depd] = note[strbtre.fac_depa];
    for (const Label* kept : {&strbtre.fac_pat, &strbtre.fac_btr}) header[*kept] = note[*kept];
    header[strbtre.fac_trs] = note[strbtre.fac_trs];
    return header;
}

Record renew(SalesBook& book, const Record& header, const QStringList& units,
             const std::optional<Record>& deliveryAddress, const Record& note) {
    const Locks locks = document_locks::ofNewWith(book, header, units).with({document_locks::document(book, note)});
    return Transaction::run(book.workspace, QStringLiteral("Renouvellement d'un transfert"), locks, [&] {
        const Record old = documents::current(book, note);
        requireRenewable(book, old);
        const Record written = write(book, header, units, deliveryAddress);
        require(written[strbtre.tri_datf] >= old[strbtre.tri_datf], "Date antérieure à celle du bon renouvelé",
                strbtre.fac_datf);
        carryOn(book, old[strbtre.fac_no], written[strbtre.fac_no]);
        return written;
    });
}

namespace {

/// Writes what the notes that meet a condition say of their renewal; they are documents of their own.
void putRenewal(SalesBook& book, const QString& renewal, const Criterion& which) {
    QStringList names;
    for (const Record& one : book.vente.select(strbtre, which)) names.append(document_locks::document(book, one));
    if (names.isEmpty()) return;
    Transaction transaction(book.workspace, {}, Locks::of(names));
    book.vente.update(strbtre, {{strbtre.fac_eta, renewal}}, which);
    transaction.commit();
}

} // namespace

void carryOn(SalesBook& book, const QString& number, const QString& next) {
    putRenewal(book, Renewed + next, strbtre.fac_no == number);
}

void release(SalesBook& book, const Record& dropped) {
    putRenewal(book, NotRenewed, strbtre.fac_eta == Renewed + dropped[strbtre.fac_no]);
}

} // namespace molven::transfer_notes

#include "sales/count_documents.h"

#include "data/require.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "stock/units.h"

#include <map>
#include <tuple>

namespace molven::count_documents {

namespace {

using Kind = Offer::Kind;
const auto& Row = strconstat;

[[noreturn]] void refuse(const Record& row, const QString& why) {
    throw Refusal(row[Row.lig_imm] + QStringLiteral(" : ") + why, Row.lig_imm.name);
}

/// The client whom a transfer between these depots concerns.
QString clientOf(Database molven, const Record& count, const Offer& offer) {
    if (const QString signer = count[strinvdep.inv_clt]; !signer.isEmpty()) return signer;
    for (const QString& depot : {offer.to, offer.from})
        if (const auto client = depot_counts::clientOf(molven, depot)) return client->value(strclient.clt_cod);
    throw Refusal(QStringLiteral("Le dépôt %1 n'est celui d'aucun client : indiquez le client").arg(offer.from),
                  strinvdep.inv_clt.name);
}

/// Delivered is what the hospital has in its own depot.
void requireOwnDepot(Database molven, const Record& count) {
    const auto client = parties::findClient(molven, count[strinvdep.inv_clt]);
    if (!client || documents::depotOf(*client) != count[strinvdep.inv_dep])
        throw Refusal(QStringLiteral("Ce dépôt n'est pas celui du client : pas de livraison"), strinvdep.inv_clt.name);
}

Offer offerOf(Kind kind, const Record& count, const Record& row) {
    const QString depot = count[strinvdep.inv_dep];
    if (kind == Kind::Delivery) return {kind, depot, {}, count[strinvdep.inv_clt], {}};
    if (kind == Kind::Transfer) return {kind, row[Row.lig_dep], depot, {}, {}};
    return {kind, depot, MainDepot, {}, {}};
}

/// A hospital's own depot is what its count delivers from, also where the delivery screen takes from the main depot
/// alone: the count has found that the units are gone.
SalesBook bookOf(const Session& session, const Offer& offer) {
    if (offer.kind != Kind::Delivery) return SalesBook(session, documentKind(QStringLiteral("BTR")));
    Session fromClientDepot = session;
    fromClientDepot.spe_btl = QStringLiteral("O");
    return SalesBook(fromClientDepot, documentKind(QStringLiteral("LIV")));
}

/// The unit is as the count left it, and no document has settled it.
void requireUnsettled(SalesBook& book, const Record& count, const QString& number) {
    const auto line =
        book.molven.find(strinvlig, strinvlig.lig_no == count[strinvdep.inv_no] && strinvlig.lig_imm == number);
    const auto unit = units::find(book.molven, Immatriculation::fromText(number));
    const auto say = [&number](const QString& why) {
        throw Refusal(number + QStringLiteral(" : ") + why, Row.lig_imm.name);
    };
    if (!line || !unit) say(QStringLiteral("n'est plus dans cet inventaire"));
    if (const QString document = line->value(strinvlig.lig_doc); !document.isEmpty())
        say(QStringLiteral("déjà sur le document ") + document);
    const QString unitState = unit->value(strproduit.tes_vte), depot = unit->value(strproduit.num_dep);
    const QString last = unit->value(strproduit.num_vte);
    const bool same = unitState == line->value(strinvlig.lig_tes) && depot == line->value(strinvlig.lig_dep) &&
                      last == line->value(strinvlig.lig_vte) &&
                      unit->value(strproduit.tri_vte) == line->value(strinvlig.lig_tri);
    if (!same) say(QStringLiteral("déplacée depuis l'inventaire, ") + depot_counts::situation(unitState, depot, last));
}

Record headerOf(SalesBook& book, const Offer& offer, const QString& patient) {
    Record header = documents::blank(book, offer.client);
    if (offer.kind == Kind::Delivery) {
        header[strlive.fac_pat] = patient.trimmed();
        return header;
    }
    header[strbtre.fac_depd] = offer.from;
    header[strbtre.fac_depa] = offer.to;
    return header;
}

} // namespace

Kind kindOf(const DepotCount& count, const Record& row) {
    const QString found = row[Row.lig_con];
    if (!row[Row.lig_doc].isEmpty()) refuse(row, QStringLiteral("réglée, ") + row[Row.lig_sit]);
    if (found == verdict::Missing) {
        if (count.header()[strinvdep.inv_dep] == MainDepot)
            refuse(row, QStringLiteral("manquante au dépôt principal : à chercher, aucun client ne l'a"));
        return Kind::Delivery;
    }
    if (found == verdict::Unexpected) {
        const bool isInStock = row[Row.lig_tes] == state::InStock && row[Row.lig_dep] != ReturnedDepot;
        if (!isInStock) refuse(row, row[Row.lig_sit] + QStringLiteral(" : aucun bon de transfert ne la prend"));
        return Kind::Transfer;
    }
    if (found == verdict::Moved) refuse(row, row[Row.lig_sit]);
    if (count.freshnessOf(row) == Freshness::Good) refuse(row, QStringLiteral("à sa place, rien à régler"));
    if (count.header()[strinvdep.inv_dep] == MainDepot) refuse(row, QStringLiteral("est déjà au dépôt principal"));
    return Kind::Return;
}

bool isSettleable(const DepotCount& count, const Record& row) {
    try {
        kindOf(count, row);
        return true;
    } catch (const Refusal&) {
        return false;
    }
}

QList<Offer> offers(Database molven, const DepotCount& count, const QList<Record>& rows) {
    std::map<std::tuple<Kind, QString, QString>, Offer> open;
    QList<Offer> full;
    for (const Record& row : rows) {
        const Offer wanted = offerOf(kindOf(count, row), count.header(), row);
        Offer& offer = open.try_emplace({wanted.kind, wanted.from, wanted.to}, wanted).first->second;
        offer.units.append(row[Row.lig_imm]);
        if (offer.units.size() < numbering::LastLine) continue;
        full.append(offer);
        offer.units.clear();
    }
    for (const auto& [key, offer] : open)
        if (!offer.units.isEmpty()) full.append(offer);
    for (Offer& offer : full) {
        if (offer.kind == Kind::Delivery)
            requireOwnDepot(molven, count.header());
        else
            offer.client = clientOf(molven, count.header(), offer);
    }
    return full;
}

void requirePatient(const Offer& offer, const QString& patient) {
    require(offer.kind != Kind::Delivery || !patient.trimmed().isEmpty(),
            "Patient obligatoire : \"INCONNU\" s'il n'est pas connu", strlive.fac_pat);
}

QString write(const Session& session, const Record& count, const Offer& offer, const QString& patient) {
    requirePatient(offer, patient);
    SalesBook book = bookOf(session, offer);
    const Record header = headerOf(book, offer, patient);
    const Locks locks = document_locks::ofNewWith(book, header, offer.units);
    return Transaction::run(book.workspace, QStringLiteral("Suite d'un inventaire"), locks, [&] {
        for (const QString& unit : offer.units) requireUnsettled(book, count, unit);
        const Record written = documents::createWith(book, header, offer.units);
        const QString number = written[book.kind().headers.fac_no];
        book.molven.update(strinvlig, {{strinvlig.lig_mod, book.kind().mode}, {strinvlig.lig_doc, number}},
                           strinvlig.lig_no == count[strinvdep.inv_no] && isOneOf(strinvlig.lig_imm, offer.units));
        return number;
    });
}

} // namespace molven::count_documents

#include "stock/units.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "stock/unit_deeds.h"
#include "stock/unit_locks.h"

namespace molven::units {

std::optional<Record> find(Database molven, const Immatriculation& immatriculation) {
    return molven.find(strproduit, immatriculation.criterion());
}

void foresee(Database molven, const QStringList& immatriculations) {
    QList<Criterion> sought;
    for (const QString& number : immatriculations) sought.append(Immatriculation::fromText(number).criterion());
    molven.foresee(strproduit, sought);
}

QString title(const Record& unit) {
    return QStringLiteral("Immatriculation %1, %2 %3")
        .arg(unit[strproduit.imm_art], unit[strproduit.ref_art], unit[strproduit.pro_li1]);
}

namespace {

QString documentLine(const char* kind, const Record& unit) {
    return QString::fromUtf8(kind) + unit[strproduit.num_vte] + QStringLiteral(" du ") + unit[strproduit.dat_vte];
}

Situation stockSituation(const Record& unit, const CompanyRules& rules) {
    const QString depot = unit[strproduit.num_dep];
    const QString client = unit[strproduit.clt_vte];
    Situation result;
    result.place = QStringLiteral("Produit stocké au dépôt : ") + depot;
    if (rules.showsDepotFamily())
        result.place += QStringLiteral("(famille: ") + unit[strproduit.fam_dep] + QStringLiteral(")");
    if (client.isEmpty()) return result;
    if (unit[strproduit.nbl_dep] == TakenBack) {
        result.document = documentLine("Reprise au client, Avoir N° ", unit);
        return result;
    }
    result.place = QStringLiteral("Produit transféré au client ") + client + QStringLiteral(" Dépôt : ") + depot;
    result.document = documentLine("Bon de Transfert N° ", unit);
    return result;
}

} // namespace

Situation situation(const Record& unit, const CompanyRules& rules) {
    const QString unitState = unit[strproduit.tes_vte];
    const QString depot = unit[strproduit.num_dep];
    const QString clientAndDepot = unit[strproduit.clt_vte] + QStringLiteral(" Dépôt : ") + depot;
    const bool returned = depot == ReturnedDepot;
    if (returned && (unitState == state::InStock || unitState == state::Sold))
        return {QStringLiteral("Produit retourné au fournisseur ") + clientAndDepot,
                documentLine("Bon de retour N° ", unit)};
    if (unitState == state::InStock) return stockSituation(unit, rules);
    if (unitState == state::Delivered)
        return {QStringLiteral("Produit livré au client ") + clientAndDepot,
                documentLine("Bon de Livraison N° ", unit)};
    if (unitState == state::Sold)
        return {QStringLiteral("Produit vendu au client ") + clientAndDepot, documentLine("Facture N° ", unit)};
    const QString set = QStringLiteral("Ancillaire : ") + unit[strproduit.stk_anc_cod];
    if (depot == SetDepot) return {set + QStringLiteral(" stocké au dépôt : ") + depot, {}};
    return {set + QStringLiteral(" en dépôt chez le client ") + unit[strproduit.clt_vte], {}};
}

QString stateName(const QString& unitState) {
    if (unitState == state::Delivered) return QStringLiteral("Livré");
    if (unitState == state::Sold) return QStringLiteral("Vendu");
    if (unitState == state::InSet) return QStringLiteral("En ancillaire");
    return QStringLiteral("En stock");
}

QString conformityName(const QString& code) {
    if (code == list::Reworked) return QStringLiteral("Retouché");
    if (code == list::Derogated) return QStringLiteral("Dérogé");
    if (code == list::Scrapped) return QStringLiteral("Rebuté");
    return QStringLiteral("Conforme");
}

Expiry expiryOf(const Record& unit) {
    const QString month = unit[strproduit.dat_per];
    if (!isMonthYear(month)) return Expiry::None;
    const QDate lastDay = QDate(month.right(4).toInt(), month.left(2).toInt(), 1).addMonths(1).addDays(-1);
    if (lastDay < Clock::today()) return Expiry::Past;
    return lastDay <= Clock::today().addMonths(1) ? Expiry::Soon : Expiry::Good;
}

QString conformityText(Database molven, const Record& unit) {
    const QString code = unit[strproduit.fab_con];
    if (code.isEmpty()) return {};
    const QString text = QStringLiteral("Ce produit est ") + conformityName(code).toLower();
    const QString cause = unit[strproduit.fab_cau];
    if (cause.isEmpty()) return text;
    return text + QStringLiteral("  CAUSE : ") + cause + QStringLiteral(" / ") + parameters::label(molven, code, cause);
}

namespace {

Record required(Database molven, const Immatriculation& immatriculation) {
    const auto unit = find(molven, immatriculation);
    if (!unit) throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecimm"));
    return *unit;
}

Locks locksOf(const Record& unit) { return Locks::of({unit_locks::unit(unit[strproduit.imm_art])}); }

Criterion historyOf(const Immatriculation& unit) {
    return strconform.conf_imm == unit.number() && strconform.conf_ann == unit.century();
}

} // namespace

void remove(Database molven, const Immatriculation& immatriculation) {
    Transaction transaction(molven.workspace(), QStringLiteral("Suppression d'une unité"));
    const Record read = required(molven, immatriculation);
    if (read[strproduit.tes_vte] != state::InStock)
        throw Refusal(QStringLiteral("impossible de supprimer cette immatriculation"), QStringLiteral("txtrecimm"));
    molven.remove(strproduit, immatriculation.criterion());
    molven.remove(strconform, historyOf(immatriculation));
    articles::moveStock(molven, read[strproduit.ref_art], Decimal(-1));
    transaction.commit();
}

Implantation implantationOf(const Record& unit) {
    return {unit[strproduit.reg_pat], unit[strproduit.reg_clt], unit[strproduit.reg_dat]};
}

QString patientText(const Implantation& implantation) {
    if (implantation.patient.isEmpty()) return QStringLiteral("aucun");
    QString text = implantation.patient;
    if (!implantation.client.isEmpty()) text += QStringLiteral(", client ") + implantation.client;
    if (!implantation.date.isEmpty()) text += QStringLiteral(", le ") + implantation.date;
    return text;
}

void requireSold(const Record& unit) {
    if (unit[strproduit.tes_vte] != state::Sold)
        throw Refusal(QStringLiteral("Impossible..cette immatriculation n'est pas vendue"),
                      QStringLiteral("txtrecimm"));
}

void implant(Database molven, const Record& before, const Implantation& implantation) {
    if (!dateFromText(implantation.date).isValid())
        throw Refusal(QStringLiteral("date invalide"), strproduit.reg_dat.name);
    const Immatriculation immatriculation = Immatriculation::fromText(before[strproduit.imm_art]);
    Transaction::run(molven.workspace(), ImplantationDeed, locksOf(before), [&] {
        const Record stored = required(molven, immatriculation);
        requireSold(stored);
        if (!implantation.client.isEmpty() && !parties::findClient(molven, implantation.client))
            throw Refusal(QStringLiteral("Ce code n'existe pas"), strproduit.reg_clt.name);
        if (const Implantation now = implantationOf(stored); now != implantationOf(before))
            throw Refusal(QStringLiteral("Le patient a été modifié par un autre poste : ") + patientText(now),
                          strproduit.reg_pat.name);
        molven.update(strproduit,
                      {{strproduit.reg_pat, implantation.patient.trimmed()},
                       {strproduit.reg_clt, padded(implantation.client, 6)},
                       {strproduit.reg_dat, implantation.date}},
                      immatriculation.criterion());
    });
}

Record conformityChange(Database molven, const Record& unit) {
    const QString code = unit[strproduit.fab_con], cause = unit[strproduit.fab_cau];
    Record change(strconform);
    change[strconform.conf_imm] = unit[strproduit.imm_art];
    change[strconform.conf_ann] = unit[strproduit.pro_ann];
    change[strconform.conf_li1] = unit[strproduit.pro_li1];
    change[strconform.conf_typ] = code;
    change[strconform.conf_cau] = cause;
    change[strconform.conf_lca] = parameters::label(molven, code, cause);
    change[strconform.conf_date] = dateText(Clock::today());
    change[strconform.conf_dat] = sortKey(Clock::today());
    change[strconform.conf_lib] = conformityName(code);
    return change;
}

bool needsCause(const QString& conformity) { return conformity != u"O"; }

QString causeOf(Database molven, const Conformity& conformity) {
    if (!needsCause(conformity.code)) return {};
    const auto valueOf = [&](const Text&) { return conformity.code; };
    const CodeKind* kind = codes::kindOf(strproduit.fab_cau, valueOf);
    return kind ? codes::completed(molven, *kind, conformity.cause) : QString();
}

void checkConformity(Database molven, const Conformity& conformity, const QString& codeField,
                     const QString& causeField) {
    if (conformity.code.size() != 1 || !QStringLiteral("OXYZ").contains(conformity.code))
        throw Refusal(QStringLiteral("Taper O, X, Y ou Z !!"), codeField);
    if (needsCause(conformity.code) && !parameters::find(molven, conformity.code, causeOf(molven, conformity)))
        throw Refusal(QStringLiteral("Cette cause n'existe pas"), causeField);
}

void changeConformity(Database molven, const Record& asRead, const QString& code, const QString& cause) {
    const Immatriculation immatriculation = Immatriculation::fromText(asRead[strproduit.imm_art]);
    checkConformity(molven, {code, cause}, QStringLiteral("txtconf"), QStringLiteral("txtconfcau"));
    Transaction::run(molven.workspace(), QStringLiteral("Conformité"), locksOf(asRead), [&] {
        Record unit = required(molven, immatriculation);
        const QString stored = conformityText(molven, unit);
        if (unit.value(strproduit.fab_con) != asRead[strproduit.fab_con] ||
            unit.value(strproduit.fab_cau) != asRead[strproduit.fab_cau])
            throw Refusal(QStringLiteral("La conformité a été modifiée par un autre poste : ") + stored,
                          QStringLiteral("txtconf"));
        unit[strproduit.fab_con] = code;
        unit[strproduit.fab_cau] = causeOf(molven, {code, cause});
        molven.insert(conformityChange(molven, unit));
        molven.update(strproduit,
                      {{strproduit.fab_con, unit.value(strproduit.fab_con)},
                       {strproduit.fab_cau, unit.value(strproduit.fab_cau)},
                       {strproduit.num_conf, QString::number(molven.count(strconform, historyOf(immatriculation)))}},
                      immatriculation.criterion());
    });
}

void requireChangeable(const Record& unit) {
    if (unit[strproduit.tes_vte] != state::InStock)
        throw Refusal(QStringLiteral("cette immatriculation n'est pas modifiable"), QStringLiteral("txtrecimm"));
}

void change(Database molven, const Record& unit, const Record& before) {
    requireChangeable(before);
    const bool placedByNote = !before[strproduit.clt_vte].isEmpty() && before[strproduit.nbl_dep] != TakenBack;
    if (placedByNote && unit[strproduit.num_dep] != before[strproduit.num_dep])
        throw Refusal(QStringLiteral("Dépôt tenu par le bon N° %1 : passer par un bon de transfert ou le retour au "
                                     "dépôt 001")
                          .arg(before[strproduit.num_vte]),
                      strproduit.num_dep.name);
    Transaction::run(molven.workspace(), CorrectionDeed, locksOf(before), [&] {
        Recordset stored = molven.select(strproduit, Immatriculation::fromText(before[strproduit.imm_art]).criterion());
        if (stored.isEmpty())
            throw Refusal(QStringLiteral("Cette immatriculation n'existe pas"), QStringLiteral("txtrecimm"));
        stored.edit(before);
        stored.draft() = unit;
        stored.update();
    });
}

QList<Assignment> fromArticle(const Record& article) {
    const auto& a = strarticle;
    const auto& u = strproduit;
    const Number& price = article[a.art_tar] == basis::WithoutVat ? a.art_pv1 : a.art_ttc;
    return {{u.pro_vte, article[price].toString()}, {u.pro_li1, article[a.art_li1]}, {u.pro_tip, article[a.art_tip]},
            {u.pro_lpp, article[a.art_lpp]},        {u.pro_nho, article[a.art_nho]}, {u.pro_tar, article[a.art_tar]}};
}

QList<Assignment> placedIn(Database molven, const CompanyRules& rules, const QString& depot) {
    QList<Assignment> placed{{strproduit.num_dep, depot}};
    if (rules.hasDepotFamilies()) placed.append({strproduit.fam_dep, parameters::depotFamily(molven, depot)});
    return placed;
}

qint64 countInStock(Database molven, const QString& reference) {
    return molven.count(strproduit, strproduit.ref_art == reference && strproduit.tes_vte != state::Sold);
}

Criterion awayInSet() { return strproduit.tes_vte == state::InSet && strproduit.num_dep != SetDepot; }

void putPresentStock(Database molven, const QString& reference) {
    const qint64 away = molven.count(strproduit, strproduit.ref_art == reference && awayInSet());
    molven.update(strarticle, {{strarticle.art_stk, QString::number(countInStock(molven, reference) - away)}},
                  strarticle.art_ref == reference);
}

qint64 updateDepotFamilies(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database historic = workspace.open(session.historic());
    Transaction transaction(workspace, QStringLiteral("Familles des dépôts"));
    qint64 changed = 0;
    for (const Record& depot : molven.select(strparam, parameters::ofList(list::Depot))) {
        const QString family = depot[strparam.fam_dep];
        for (Database holder : {molven, historic})
            changed += holder.update(strproduit, {{strproduit.fam_dep, family}},
                                     strproduit.num_dep == depot[strparam.num_par] && strproduit.fam_dep != family);
    }
    transaction.commit();
    return changed;
}

} // namespace molven::units

#include "stock/stock_listing.h"

#include "data/errors.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "stock/units.h"

namespace molven::stock_listing {

using listing::box, listing::known;
using Match = ListingCriterion::Match;

const ListingCriteria& articleCriteria() {
    const auto& a = strarticle;
    static const ListingCriteria all{
        {box("REF1", "Référence :", a.art_ref, Match::Equal, "référence = '"),
         box("REFD", "de :", a.art_ref, Match::AtLeast, "référence >= '"),
         box("REFF", "à :", a.art_ref, Match::AtMost, "référence <= '"),
         box("Txtcpt", "Compte vente :", a.art_cpt, Match::Equal, "vente = '"),
         box("Txtcpte", "Compte export :", a.art_cpte, Match::Equal, "export = '"),
         box("Txtcpta", "Compte achat :", a.art_cpta, Match::Equal, "achat = '"),
         box("Txtcpts", "Compte stock :", a.art_cpts, Match::Equal, "stock = '"),
         known(box("txtfam", "Famille :", a.art_fam, Match::Equal, "fam = '"),
               {&codes::ArticleFamily, &codes::AncillaryFamily}, "Cette famille |n'existe pas"),
         known(box("txtfou", "Fournisseur :", a.art_fou, Match::Equal, "fourn = '", 6), {&codes::Supplier},
               "Ce fournisseur |n'existe pas")},
        {{QStringLiteral("Cmbsuivi"),
          QStringLiteral("Suivi :"),
          {{QStringLiteral("Tous"), {}, {}},
           {QStringLiteral("Suivis"), a.art_aig == follow_up::ByUnit, QStringLiteral("art.suivi")},
           {QStringLiteral("Non suivis"), a.art_aig == follow_up::ByMovements, QStringLiteral("art. non suivi")}}}}};
    return all;
}

const ListingCriteria& unitCriteria() {
    const auto& u = strproduit;
    static const ListingCriteria all{
        {box("DEBIMM", "Immat. du :", u.imm_art, Match::AtLeast, "immat >= '", 8),
         box("FINIMM", "au :", u.imm_art, Match::AtMost, "immat <= '", 8),
         box("REF1", "Référence :", u.ref_art, Match::Equal, "référence = '"),
         known(box("txtnum_dep", "Dépôt :", u.num_dep, Match::Equal, "dépôt = '"), {&codes::Depot},
               "Ce dépôt |n'existe pas"),
         known(box("txtfam_dep", "Famille dépôt :", u.fam_dep, Match::Equal, "Fam Depot '"), {&codes::DepotFamily},
               "Cette famille |n'existe pas")},
        {}};
    return all;
}

QStringList unitOrders() {
    return {QStringLiteral("Immatriculation"), QStringLiteral("Référence"), QStringLiteral("Dépôt")};
}

Recordset articles(Database molven, const ListingSelection& selection) {
    Recordset found = molven.select(
        strarticle, strarticle.art_stk != Decimal(0) && listing::criterion(molven, articleCriteria(), selection),
        strarticle.art_ref);
    if (found.isEmpty()) throw Refusal(QStringLiteral("Aucun article correspondant à ce critère"));
    return found;
}

namespace {

Criterion heldAt(const QString& day) {
    return (strproduit.tes_vte != state::Sold || strproduit.tri_vte > day) && !(strproduit.tri_liv > day);
}

} // namespace

QList<Record> articlesAt(UnitFiles files, const ListingSelection& selection, const QString& day) {
    Database molven = files.molven;
    QHash<QString, qint64> counts;
    for (Database file : files.all()) {
        const auto held = file.countBy(strproduit, strproduit.ref_art, heldAt(day));
        for (auto count = held.begin(); count != held.end(); ++count) counts[count.key()] += count.value();
    }
    const Criterion followed =
        listing::criterion(molven, articleCriteria(), selection) && strarticle.art_aig == follow_up::ByUnit;
    QList<Record> found;
    for (const Record& article : molven.select(strarticle, followed, strarticle.art_ref)) {
        const qint64 quantity = counts.value(article[strarticle.art_ref]);
        if (quantity == 0) continue;
        Record then = article;
        then[strarticle.art_stk] = Decimal(static_cast<long long>(quantity));
        found.append(then);
    }
    if (found.isEmpty()) throw Refusal(QStringLiteral("Aucun article correspondant à ce critère"));
    return found;
}

Criterion units(Database molven, const ListingSelection& selection) {
    return strproduit.tes_vte != state::Sold && listing::criterion(molven, unitCriteria(), selection);
}

Order unitOrder(const ListingSelection& selection) {
    if (selection.order == 1) return {strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
    if (selection.order == 2) return {strproduit.num_dep, strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
    return {strproduit.pro_ann, strproduit.imm_art};
}

} // namespace molven::stock_listing

#include "stock/stock_listing.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "stock/units.h"

namespace molven::stock_listing {

namespace {

void narrow(Criterion& all, const Criterion& one, const QString& value) {
    if (!value.trimmed().isEmpty()) all = all && one;
}

} // namespace

namespace {

/// The condition without the quantity.
Criterion ofArticles(const ArticleSelection& s) {
    Criterion all;
    narrow(all, strarticle.art_ref == s.reference.trimmed(), s.reference);
    narrow(all, strarticle.art_ref >= s.firstReference.trimmed(), s.firstReference);
    narrow(all, strarticle.art_ref <= s.lastReference.trimmed(), s.lastReference);
    narrow(all, strarticle.art_cpt == s.salesAccount.trimmed(), s.salesAccount);
    narrow(all, strarticle.art_cpte == s.exportAccount.trimmed(), s.exportAccount);
    narrow(all, strarticle.art_cpta == s.purchaseAccount.trimmed(), s.purchaseAccount);
    narrow(all, strarticle.art_cpts == s.stockAccount.trimmed(), s.stockAccount);
    narrow(all, strarticle.art_fam == s.family.trimmed(), s.family);
    narrow(all, strarticle.art_fou == padded(s.supplier, 6), s.supplier);
    narrow(all, strarticle.art_aig == s.followUp, s.followUp);
    return all;
}

} // namespace

Criterion criterion(const ArticleSelection& selection) {
    return strarticle.art_stk != Decimal(0) && ofArticles(selection);
}

Recordset articles(Database molven, const ArticleSelection& selection) {
    Recordset found = molven.select(strarticle, criterion(selection), strarticle.art_ref);
    if (found.isEmpty()) throw Refusal(QStringLiteral("Aucun article correspondant à ce critère"));
    return found;
}

namespace {

Criterion heldAt(const QString& day) {
    return (strproduit.tes_vte != state::Sold || strproduit.tri_vte > day) && !(strproduit.tri_liv > day);
}

} // namespace

qint64 quantityAt(Database molven, const QString& reference, const QString& day) {
    return molven.count(strproduit, strproduit.ref_art == reference && heldAt(day));
}

QList<Record> articlesAt(Database molven, const ArticleSelection& selection, const QString& day) {
    const QHash<QString, qint64> counts = molven.countBy(strproduit, strproduit.ref_art, heldAt(day));
    QList<Record> found;
    for (const Record& article : molven.select(
             strarticle, ofArticles(selection) && strarticle.art_aig == follow_up::ByUnit, strarticle.art_ref)) {
        const qint64 quantity = counts.value(article[strarticle.art_ref]);
        if (quantity == 0) continue;
        Record then = article;
        then[strarticle.art_stk] = Decimal(static_cast<long long>(quantity));
        found.append(then);
    }
    if (found.isEmpty()) throw Refusal(QStringLiteral("Aucun article correspondant à ce critère"));
    return found;
}

Criterion criterion(const UnitStockSelection& s) {
    Criterion all = strproduit.tes_vte != state::Sold;
    narrow(all, strproduit.imm_art >= padded(s.firstUnit, 8), s.firstUnit);
    narrow(all, strproduit.imm_art <= padded(s.lastUnit, 8), s.lastUnit);
    narrow(all, strproduit.ref_art == s.reference.trimmed(), s.reference);
    narrow(all, strproduit.num_dep == s.depot.trimmed(), s.depot);
    narrow(all, strproduit.fam_dep == s.depotFamily.trimmed(), s.depotFamily);
    return all;
}

Order order(const UnitStockSelection& selection) {
    if (selection.order == 1) return {strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
    if (selection.order == 2) return {strproduit.num_dep, strproduit.ref_art, strproduit.pro_ann, strproduit.imm_art};
    return {strproduit.pro_ann, strproduit.imm_art};
}

} // namespace molven::stock_listing

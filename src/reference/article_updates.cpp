#include "reference/article_updates.h"

#include "data/errors.h"
#include "reference/article_tables.h"
#include "reference/parameters.h"

namespace molven::article_updates {

namespace {

/// One update a VAT code: the articles of a code share few of them.
qint64 pushPrice(Database molven, const Criterion& ofCode, const Decimal& price) {
    Transaction transaction(molven.workspace(), QStringLiteral("Mise à jour des prix"));
    qint64 changed = 0;
    const QStringList vatCodes = molven.countBy(strarticle, strarticle.art_tva, ofCode).keys();
    for (const QString& vatCode : vatCodes) {
        const Decimal rate = parameters::vatRate(molven, vatCode);
        const Decimal withoutVat = (price * Decimal(100) / (Decimal(100) + rate)).rounded(2);
        changed += molven.update(strarticle,
                                 {{strarticle.art_pv1, withoutVat.toString()},
                                  {strarticle.art_ttc, price.toString()},
                                  {strarticle.art_res, price.toFixed(2)}},
                                 ofCode && strarticle.art_tva == vatCode);
    }
    transaction.commit();
    return changed;
}

} // namespace

qint64 pushLppPrice(Database molven, const QString& lppCode, const Decimal& price) {
    return pushPrice(molven, strarticle.art_lpp == lppCode, price);
}

qint64 pushTipsPrice(Database molven, const QString& tipsCode, const Decimal& price) {
    return pushPrice(molven, strarticle.art_tip == tipsCode, price);
}

qint64 setFamilyAccount(Database molven, const QString& family, const QString& account) {
    if (account.size() != 9) throw Refusal(QStringLiteral("Imputation comptable incorrecte"), strparam.cpt_par.name);
    const qint64 changed =
        molven.update(strarticle, {{strarticle.art_cpt, account}}, strarticle.art_fam == family.trimmed());
    if (changed == 0) throw Refusal(QStringLiteral("Aucun article dans cette famille"), strparam.num_par.name);
    return changed;
}

qint64 fillPanTable(Database molven) {
    Transaction transaction(molven.workspace(), QStringLiteral("Table PAN"));
    QHash<QString, QString> panPrices;
    for (const Record& row : molven.select(strpan)) panPrices.insert(row[strpan.pan_ref], row.value(strpan.pan_pan));
    molven.remove(strpan);
    const Recordset articles = molven.select(strarticle, {}, strarticle.art_ref);
    for (const Record& article : articles) {
        Record row(strpan);
        row[strpan.pan_ref] = article[strarticle.art_ref];
        row[strpan.pan_lib] = article[strarticle.art_li1];
        row[strpan.pan_pa] = article[strarticle.art_dpa];
        row.set(static_cast<const Field&>(strpan.pan_pan), panPrices.value(article[strarticle.art_ref]));
        molven.insert(row);
    }
    transaction.commit();
    return articles.count();
}

qint64 copyPurchaseToPan(Database molven) {
    return molven.copyField(strpan, strpan.pan_pan, strpan.pan_pa, strpan.pan_pa != Decimal(0));
}

} // namespace molven::article_updates

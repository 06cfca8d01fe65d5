#include "reference/article_updates.h"

#include "data/errors.h"
#include "reference/article_tables.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"

namespace molven::article_updates {

const Reimbursement& lpp() {
    static const Reimbursement list{code_tables::lppCodes(), strlpp.lpp_ttc, strarticle.art_lpp};
    return list;
}

const Reimbursement& tips() {
    static const Reimbursement list{code_tables::tipsCodes(), strpartips.ttc_tips, strarticle.art_tip};
    return list;
}

qint64 pushPrice(Database molven, const Reimbursement& list, const QString& code, const Decimal& price) {
    Transaction transaction(molven.workspace(), QStringLiteral("Mise à jour des prix"));
    const Criterion ofCode = list.codeOfArticle == code;
    qint64 changed = 0;
    // One update a VAT code: the articles of a code share few of them.
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

void saveReimbursement(Database molven, const Reimbursement& list, const Record& row,
                       const std::optional<Record>& before, bool intoArticles) {
    Transaction transaction(molven.workspace(), QStringLiteral("Mise à jour des prix"));
    if (before)
        code_tables::change(molven, list.kind, row, *before);
    else
        code_tables::add(molven, list.kind, row);
    if (intoArticles) pushPrice(molven, list, row[*list.kind.key.first()].trimmed(), row[list.price]);
    transaction.commit();
}

FamilyAccount setFamilyAccount(Database molven, Database compta, const QString& family, const QString& account) {
    if (account.size() != 9) throw Refusal(QStringLiteral("Imputation comptable incorrecte"), strparam.cpt_par.name);
    if (family.trimmed().isEmpty()) throw Refusal(QStringLiteral(" Code obligatoire"), strparam.num_par.name);
    Transaction transaction(molven.workspace(), QStringLiteral("Compte d'une famille"));
    const qint64 changed =
        molven.update(strarticle, {{strarticle.art_cpt, account}}, strarticle.art_fam == family.trimmed());
    if (changed == 0) throw Refusal(QStringLiteral("Aucun article dans cette famille"), strparam.num_par.name);
    transaction.commit();
    return {changed, compta.count(strplan, strplan.cpt_aff == account) > 0};
}

qint64 fillPanTable(Database molven, const Progress& progress) {
    Transaction transaction(molven.workspace(), QStringLiteral("Table PAN"));
    QHash<QString, Record> kept;
    for (const Record& row : molven.select(strpan)) kept.insert(row[strpan.pan_ref].toUpper(), row);
    const Recordset articles = molven.select(strarticle, {}, strarticle.art_ref);
    qint64 done = 0;
    for (const Record& article : articles) {
        tell(progress, done++, articles.count());
        const QString reference = article[strarticle.art_ref];
        const auto before = kept.constFind(reference.toUpper());
        Record row = before == kept.constEnd() ? Record(strpan) : *before;
        row[strpan.pan_ref] = reference;
        row[strpan.pan_lib] = article[strarticle.art_li1];
        row.set(strpan.pan_pa, article.value(strarticle.art_dpa));
        if (before == kept.constEnd())
            molven.insert(row);
        else if (!(row == *before))
            molven.update(strpan,
                          {{strpan.pan_lib, row.value(strpan.pan_lib)}, {strpan.pan_pa, row.value(strpan.pan_pa)}},
                          strpan.pan_ref == reference);
    }
    transaction.commit();
    return articles.count();
}

qint64 copyPurchaseToPan(Database molven) {
    return molven.copyField(strpan, strpan.pan_pan, strpan.pan_pa, strpan.pan_pa != Decimal(0));
}

} // namespace molven::article_updates

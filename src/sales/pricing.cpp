#include "sales/pricing.h"

#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"

namespace molven::pricing {

QString Preset::message() const {
    return withoutVat ? QStringLiteral("Ce prix de vente est HT") : QStringLiteral("Ce prix de vente est TTC");
}

namespace {

QStringList severalLpp(Database molven, const Record& article) {
    QStringList codes;
    const Record several = articles::severalLpp(molven, article[strarticle.art_ref]);
    for (const Text* code : {&strartlpp.lpp_1, &strartlpp.lpp_2, &strartlpp.lpp_3})
        if (const QString found = several[*code]; !found.isEmpty()) codes.append(found);
    return codes;
}

} // namespace

QStringList reimbursements(Database molven, const Record& article) {
    if (article[strarticle.art_cat] == u"T" || article[strarticle.art_lpp] != SeveralLpp) return {};
    return severalLpp(molven, article);
}

QString lppOf(Database molven, const Record& article) {
    return article[strarticle.art_lpp] == SeveralLpp ? severalLpp(molven, article).value(0)
                                                     : article[strarticle.art_lpp];
}

namespace {

/// "NON SOUMIS" is recognised however it was typed.
QString approvalOf(const Record& article) {
    const QString number = article[strarticle.art_nho];
    return number.simplified().compare(NotSubject, Qt::CaseInsensitive) == 0 ? NotSubject : number;
}

Criterion discountOf(const Record& article, const Record& client) {
    return strparrem.rem_clt == client[strclient.clt_rem] && strparrem.rem_art == article[strarticle.art_rem];
}

Criterion tariffOf(const Record& article, const Record& client) {
    return strtarifclt.tar_clt == client[strclient.clt_cod] &&
           isOneOf(trimmed(strtarifclt.tar_ref), codes::formsOf(codes::ArticleOfTariff, article[strarticle.art_ref]));
}

} // namespace

void foresee(Database molven, const QList<Record>& articles, const Record& client) {
    QList<Criterion> discounts, tariffs;
    QStringList severals;
    for (const Record& article : articles) {
        discounts.append(discountOf(article, client));
        tariffs.append(tariffOf(article, client));
        if (article[strarticle.art_lpp] == SeveralLpp) severals.append(article[strarticle.art_ref]);
    }
    molven.foresee(strparrem, discounts);
    molven.foresee(strtarifclt, tariffs);
    articles::foreseeSeveralLpp(molven, severals);
}

Preset preset(Database molven, const Record& article, const Record& client, bool threeLabels, bool consignment) {
    Preset result;
    result.designation = {article[strarticle.art_li1], article[strarticle.art_li2]};
    if (threeLabels) result.designation.append(article[strarticle.art_lib3]);
    result.vatCode = article[strarticle.art_tva];
    result.withoutVat = article[strarticle.art_tar] == u"H";
    result.price = result.withoutVat ? article[strarticle.art_pv1] : article[strarticle.art_ttc];
    result.purchasePrice = article[strarticle.art_pam];
    result.reimbursements = reimbursements(molven, article);
    if (article[strarticle.art_cat] == u"T")
        result.reimbursement = article[strarticle.art_tip];
    else
        result.reimbursement = lppOf(molven, article);
    if (consignment) result.approval = approvalOf(article);
    const auto discount = molven.find(strparrem, discountOf(article, client));
    if (discount) result.discount = (*discount)[strparrem.rem_rem];
    const auto tariff = molven.find(strtarifclt, tariffOf(article, client));
    if (tariff) {
        result.discount = 0;
        result.price = (*tariff)[strtarifclt.tar_pvt];
    }
    return result;
}

Decimal net(const Decimal& price, const Decimal& discount) {
    return discount.isZero() ? price : (price - price * discount / Decimal(100)).rounded(2);
}

LineTotal lineTotal(const Decimal& quantity, const Decimal& netPrice, bool withoutVat, const Decimal& vatRate) {
    const Decimal total = (quantity * netPrice).rounded(2);
    const Decimal factor = Decimal(1) + vatRate / Decimal(100);
    if (withoutVat) return {total, (total * factor).rounded(2)};
    return {(total / factor).rounded(2), total};
}

} // namespace molven::pricing

#include "stock/labels.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"
#include "stock/units.h"

namespace molven::labels {

NumberRange::NumberRange(const QString& typedFirst, const QString& typedLast, const QString& firstField)
    : first(padded(typedFirst, 6)), last(padded(typedLast, 6)) {
    if (first.isEmpty() && last.isEmpty()) throw Refusal(QStringLiteral("Faire une sélection"), firstField);
    if (first.isEmpty()) first = QStringLiteral("000000");
    if (last.isEmpty()) last = QStringLiteral("999999");
    if (last < first) throw Refusal(QStringLiteral("N° Fin < N° Début ???"), firstField);
}

Recordset select(Database molven, const NumberRange& range, const QString& unitState) {
    Recordset units = molven.select(strproduit,
                                    strproduit.num_vte >= range.first && strproduit.num_vte <= range.last &&
                                        strproduit.tes_vte == unitState,
                                    strproduit.imm_art);
    if (units.isEmpty()) throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"));
    return units;
}

namespace {

/// What the unit is sold for with VAT: its own price is in its basis.
Decimal priceWithVat(Database molven, const Record& unit) {
    const Decimal price = unit[strproduit.pro_vte];
    if (unit[strproduit.pro_tar] != basis::WithoutVat) return price;
    const auto article = articles::find(molven, unit[strproduit.ref_art]);
    if (!article) return price;
    const Decimal rate = parameters::vatRate(molven, article->value(strarticle.art_tva));
    return (price * (Decimal(100) + rate) / Decimal(100)).rounded(2);
}

/// A label's two prices, formatted; both empty for a unit without price.
struct Prices {
    QString own;
    QString euros;
};

/// The coefficient of a currency is `mon_euro` x 100000: a price divided by it over 100000 is in the other currency.
Prices pricesOf(Database molven, const Record& unit) {
    if (unit.isNull(strproduit.pro_vte)) return {};
    const QString currency = unit[strproduit.pro_mon];
    const Decimal price = priceWithVat(molven, unit);
    const auto known = molven.find(strmonnaie, strmonnaie.mon_cle == currency);
    const Decimal coefficient = known ? (*known)[strmonnaie.mon_euro] * Decimal(100000) : Decimal(100000);
    const Decimal converted = coefficient.isZero() ? Decimal() : price * Decimal(100000) / coefficient;
    const QString kept = format(price, QStringLiteral("######0.00"));
    const QString other = format(converted, QStringLiteral("#######0.00"));
    return currency == u"EUR" ? Prices{other, kept} : Prices{kept, other};
}

QString lppLabel(Database molven, const QString& code) {
    const auto lpp = molven.find(strlpp, strlpp.lpp_code == code);
    return lpp ? QString((*lpp)[strlpp.lpp_lib]) : QString();
}

void fillReimbursement(Database molven, Record& label, const Record& unit) {
    const QString tips = unit[strproduit.pro_tip];
    label[etiq.e_tip] = tips;
    if (const auto known = molven.find(strpartips, strpartips.cod_tips == tips))
        label[etiq.e_ltip] = (*known)[strpartips.lib_tips];
    QStringList codes{unit[strproduit.pro_lpp]};
    if (codes.first() == SeveralLpp) {
        codes.clear();
        if (const auto several = molven.find(strartlpp, strartlpp.lpp_ref == unit[strproduit.ref_art]))
            for (const Text* field : {&strartlpp.lpp_1, &strartlpp.lpp_2, &strartlpp.lpp_3})
                if (const QString code = (*several)[*field]; !code.isEmpty()) codes.append(code);
    }
    // The first code is the one to scan; each stands with its own label.
    const std::pair<const Text*, const Label*> places[] = {
        {&etiq.e_lpp, &etiq.e_llpp}, {&etiq.e_lpp2, &etiq.e_llpp2}, {&etiq.e_lpp3, &etiq.e_llpp3}};
    for (qsizetype i = 0; i < codes.size(); ++i) {
        label[*places[i].first] = codes[i];
        label[*places[i].second] = lppLabel(molven, codes[i]);
    }
}

void fillIdentity(Record& label, const Record& unit, const CompanyRules& rules) {
    const QString serial = unit[strproduit.fou_imm];
    const QString reference = unit[strproduit.fou_ref];
    const bool supplierOwn = rules.labelsShowSupplierSerial();
    label[etiq.e_typ] = unit[strproduit.pro_typ];
    label[etiq.e_imm] = supplierOwn && !serial.isEmpty() ? serial : QString(unit[strproduit.imm_art]);
    label[etiq.e_ref] = supplierOwn && !reference.isEmpty() ? reference : QString(unit[strproduit.ref_art]);
    label[etiq.e_nho] = unit[strproduit.pro_nho];
    label[etiq.e_nste] = unit[strproduit.num_ste];
    label[etiq.e_dste] = unit[strproduit.dat_ste];
    label[etiq.e_dper] = unit[strproduit.dat_per];
}

void fillByType(Record& label, const Record& unit) {
    const QString type = unit[strproduit.pro_typ];
    if (type != u"N") label[etiq.n_lot] = unit[strproduit.lot_art];
    if (type == u"F") {
        label[etiq.f_ino] = unit[strproduit.ino_cer];
        label[etiq.f_pee] = unit[strproduit.pee_cer];
        label[etiq.f_reg] = unit[strproduit.reg_art];
        label[etiq.f_pie] = padded(unit[strproduit.pie_art], 3);
    }
    if (type == u"G") {
        label[etiq.g_tis] = unit[strproduit.ino_cer];
        label[etiq.g_don] = unit[strproduit.pee_cer];
        label[etiq.g_dpr] = unit[strproduit.reg_art];
    }
}

QString originOnLabel(const QString& origin) {
    if (origin == u"A") return QStringLiteral("ORIGINE ANIMALE");
    if (origin == u"H") return QStringLiteral("ORIGINE HUMAINE");
    return QStringLiteral("ORIGINE NI ANIMALE NI HUMAINE");
}

/// An amount is followed by its currency, which the print turns into the sign; words stand as they are.
QString liabilityTariff(const QString& stored) {
    if (stored.isEmpty()) return QStringLiteral("EGAL AU PRIX DE VENTE TTC");
    const auto amount = Decimal::parse(stored);
    return amount ? format(*amount, QStringLiteral("#####0.00")) + QStringLiteral(" EUR") : stored;
}

void fillFromArticle(Database molven, Record& label, const QString& reference) {
    const auto found = articles::find(molven, reference);
    if (!found) return;
    const Record& article = *found;
    label[etiq.e_li1] = article[strarticle.art_li1];
    label[etiq.e_li2] = article[strarticle.art_li2];
    label[etiq.e_ht] = format(article[strarticle.art_pv1], QStringLiteral("#####0.00"));
    label[etiq.e_res] = liabilityTariff(article[strarticle.art_res]);
    label[etiq.e_ori] = originOnLabel(article[strarticle.art_ori]);
}

} // namespace

qint64 fill(Database molven, Database tri, const CompanyRules& rules, const Recordset& units, Waiting waiting) {
    Transaction transaction(molven.workspace(), {}, Locks::none());
    if (waiting == Waiting::Replaced) tri.remove(etiq);
    for (const Record& unit : units) {
        Record label(etiq);
        fillIdentity(label, unit, rules);
        fillReimbursement(molven, label, unit);
        fillByType(label, unit);
        const Prices prices = pricesOf(molven, unit);
        label[etiq.e_ttc] = prices.own;
        label[etiq.e_euro] = prices.euros;
        fillFromArticle(molven, label, unit[strproduit.ref_art]);
        tri.insert(label);
    }
    transaction.commit();
    return units.count();
}

void discard(Database tri, const CompanyRules& rules, const Record& unit) {
    Record label(etiq);
    fillIdentity(label, unit, rules);
    tri.remove(etiq, etiq.e_imm == label.value(etiq.e_imm) && etiq.e_ref == label.value(etiq.e_ref));
}

} // namespace molven::labels

#include "electronic/line_of_paper.h"

#include "reference/articles.h"
#include "reference/parameters.h"
#include "sales/lines.h"

namespace molven::electronic {

namespace {

const auto& l = strfacl;

QStringList designation(const Record& line) {
    QStringList lines;
    for (const Label* field : {&l.fac_li1, &l.fac_li2, &l.fac_li3})
        if (const QString text = line[*field].trimmed(); !text.isEmpty()) lines.append(text);
    return lines;
}

/// "N° Lot : L2  N° pièce : 3" as two attributes; what is written otherwise is one.
QList<Attribute> attributesOf(const QString& identification) {
    QList<Attribute> found;
    for (const QString& part : identification.split(QStringLiteral("  "), Qt::SkipEmptyParts)) {
        const bool isNamed = part.contains(QStringLiteral(" : "));
        QString name = isNamed ? part.section(QStringLiteral(" : "), 0, 0).trimmed() : QStringLiteral("Identification");
        if (name.startsWith(QStringLiteral("N° "))) name = name.mid(3);
        const QString value = isNamed ? part.section(QStringLiteral(" : "), 1) : part;
        if (!value.trimmed().isEmpty()) found.append({name, value.trimmed()});
    }
    return found;
}

QList<Attribute> attributesOf(const Record& line) {
    QList<Attribute> all = attributesOf(line[l.fac_id1]) + attributesOf(line[l.fac_id2]);
    const std::pair<const char*, QString> further[]{
        {"Immatriculation", line[l.fac_imm]},        {"Numéro de série", line[l.fac_fimm]},
        {"Référence fournisseur", line[l.fac_fref]}, {"Péremption", line[l.fac_dpr]},
        {"Lot de stérilisation", line[l.fac_ste]},   {"Date de stérilisation", line[l.fac_dst]},
        {"Code LPP/TIPS", line[l.fac_tip]},          {"Homologation", line[l.fac_nho]},
        {"Bon de livraison", line[l.fac_nbl]},       {"Document d'origine", line[l.fac_ori]}};
    for (const auto& [name, value] : further)
        if (!value.trimmed().isEmpty()) all.append({QString::fromUtf8(name), value.trimmed()});
    return all;
}

/// The price of one, with as many decimals as make the amount again.
Decimal priceFor(const Decimal& amount, const Decimal& quantity) {
    const Decimal price = amount / quantity;
    for (int places = 2; places < 10; ++places)
        if ((price.rounded(places) * quantity).rounded(2) == amount) return price.rounded(places);
    return price.rounded(10);
}

} // namespace

QStringList LineMaker::textOf(const Record& line) {
    return document_lines::isText(l, line) ? designation(line) : QStringList();
}

Line LineMaker::line(const Record& line) const {
    const QStringList words = designation(line);
    const auto article = articles::find(book_.molven, line[l.fac_ref]);
    Line made;
    made.number = line[l.fac_lg];
    made.reference = line[l.fac_ref];
    made.ean = article ? article->value(strarticle.art_ean) : QString();
    made.name = words.isEmpty() ? made.reference : words.first();
    made.description = words.mid(1).join(u' ');
    made.attributes = attributesOf(line);
    made.quantity = line[l.fac_qte] * sign_;
    made.amount = line[l.fac_ht] * sign_;
    made.tax = parties_.taxation(parameters::vatRate(book_.molven, line[l.fac_tva]));
    putPrice(made, line);
    return made;
}

/// A price kept with VAT is told without: its net follows from the line's amount.
void LineMaker::putPrice(Line& made, const Record& line) const {
    const bool withoutVat = line[l.fac_tar] == u"H";
    made.price = withoutVat ? line[l.fac_pv] : priceFor(made.amount, made.quantity);
    if (line[l.fac_remx].isZero()) return;
    const Decimal factor = Decimal(1) + made.tax.rate / Decimal(100);
    const Decimal gross = withoutVat ? line[l.fac_px] : (line[l.fac_px] / factor).rounded(4);
    if (gross < made.price) return;
    made.grossPrice = gross;
    made.discount = gross - made.price;
}

} // namespace molven::electronic

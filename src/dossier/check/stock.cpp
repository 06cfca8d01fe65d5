#include "dossier/check/checks.h"

#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "sales/record_trail.h"
#include "stock/stock_tables.h"
#include "stock/units.h"

#include <QSet>

namespace molven::check {

namespace {

const QString MolvenFile = QStringLiteral("molven.mdb"), SetsFile = QStringLiteral("ancillaire.mdb");

} // namespace

QHash<QString, StockCount> unitsInStock(Database molven) {
    QHash<QString, StockCount> counted;
    const auto unsold = molven.countBy(strproduit, strproduit.ref_art, strproduit.tes_vte != state::Sold);
    for (auto count = unsold.begin(); count != unsold.end(); ++count)
        counted[count.key().toUpper()].unsold += count.value();
    const auto away = molven.countBy(strproduit, strproduit.ref_art, units::awayInSet());
    for (auto count = away.begin(); count != away.end(); ++count) counted[count.key().toUpper()].away += count.value();
    return counted;
}

void checkQuantities(references::Files& files, Faults& faults) {
    QHash<QString, StockCount> inStock = unitsInStock(files[DataFile::Molven]);
    for (const Record& row : files[DataFile::Molven].select(strarticle, strarticle.art_aig == follow_up::ByUnit)) {
        const QString reference = row[strarticle.art_ref];
        const StockCount counted = inStock.take(reference.toUpper());
        if (const Decimal stock = row[strarticle.art_stk]; !counted.allows(stock))
            faults.append({MolvenFile,
                           reference,
                           QStringLiteral("art_stk = %1 pour %2 unités").arg(shown(stock)).arg(counted.unsold),
                           &kind::Quantities,
                           {files[DataFile::Molven].path(), &strarticle, reference}});
    }
    for (auto left = inStock.begin(); left != inStock.end(); ++left)
        faults.append(
            {MolvenFile, left.key(), QStringLiteral("unités d'un article absent ou non suivi"), &kind::Units});
}

namespace {

/// Where a set's line says that a unit is.
struct SetPlace {
    QString set, depot, client, article, type;
};

/// Every line of a set lies where its line "000" says; answers the places of the units.
QHash<QString, SetPlace> placesIn(Database ancillaire, Faults& faults) {
    QHash<QString, Record> headers;
    for (const Record& header : ancillaire.select(strstock, strstock.stk_imm_art == QString())) {
        const QString set = header[strstock.stk_anc_imm];
        if (headers.contains(set))
            faults.append(
                {SetsFile, QStringLiteral("ancillaire ") + set, QStringLiteral("a deux lignes 000"), &kind::Sets});
        headers.insert(set, header);
    }
    QHash<QString, SetPlace> places;
    for (const Record& line : ancillaire.select(strstock, strstock.stk_imm_art != QString())) {
        const QString unit = line[strstock.stk_imm_art], set = line[strstock.stk_anc_imm];
        const auto fault = [&](const QString& text) { faults.append({SetsFile, unit, text, &kind::Sets}); };
        if (places.contains(unit)) fault(QStringLiteral("sur deux lignes d'ancillaire"));
        places.insert(unit, {set, line[strstock.stk_num_dep], line[strstock.stk_clt_vte], line[strstock.stk_ref_art],
                             line[strstock.stk_anc_code]});
        const auto header = headers.constFind(set);
        if (header == headers.constEnd()) {
            fault(QStringLiteral("sur une ligne de l'ancillaire %1, qui n'a pas de ligne 000").arg(set));
            continue;
        }
        for (const Text* field : {&strstock.stk_anc_code, &strstock.stk_num_dep, &strstock.stk_num_vte,
                                  &strstock.stk_dat_vte, &strstock.stk_clt_vte})
            if (line[*field] != header->value(*field))
                fault(QStringLiteral("ancillaire %1 : %2 « %3 » sur sa ligne, « %4 » sur la ligne 000")
                          .arg(set, record_trail::fieldTitle(strstock.name, field->name), line[*field],
                               header->value(*field)));
    }
    return places;
}

/// The heading line of a composition holds the units of its components.
void checkCompositions(Database ancillaire, Faults& faults) {
    QMap<QString, Decimal> components, totals;
    for (const Record& line : ancillaire.select(strnomenclature)) {
        const QString type = QString(line[strnomenclature.anc_code]).toUpper();
        const bool isHeading = line[strnomenclature.anc_lg] == u"000";
        (isHeading ? totals : components)[type] += line[strnomenclature.anc_qte];
    }
    for (auto type = components.begin(); type != components.end(); ++type)
        if (totals.value(type.key()) != *type)
            faults.append({SetsFile, type.key(),
                           QStringLiteral("nomenclature de %1 unités, %2 sur la ligne 000")
                               .arg(shown(*type), shown(totals.value(type.key()))),
                           &kind::Sets});
}

} // namespace

void checkSets(references::Files& files, Faults& faults) {
    QHash<QString, SetPlace> places = placesIn(files[DataFile::Ancillaire], faults);
    checkCompositions(files[DataFile::Ancillaire], faults);
    const Criterion concerned = strproduit.tes_vte == state::InSet || strproduit.stk_anc_imm != QString();
    for (const Record& unit : files[DataFile::Molven].select(strproduit, concerned)) {
        const QString number = unit[strproduit.imm_art];
        const auto [set, depot, client, article, type] = places.take(number);
        const auto fault = [&](const QString& text) { faults.append({MolvenFile, number, text, &kind::Sets}); };
        if (set.isEmpty())
            fault(QStringLiteral("dans un ancillaire qui ne la contient pas"));
        else if (unit[strproduit.tes_vte] != state::InSet || unit[strproduit.stk_anc_imm] != set)
            fault(QStringLiteral("dans l'ancillaire %1, mais pas dans cet état").arg(set));
        else if (unit[strproduit.num_dep] != depot)
            fault(QStringLiteral("dépôt %1, son ancillaire %2 est en %3").arg(unit[strproduit.num_dep], set, depot));
        else if (unit[strproduit.clt_vte] != client)
            fault(
                QStringLiteral("client %1, son ancillaire %2 est chez %3").arg(unit[strproduit.clt_vte], set, client));
        else if (article.compare(unit[strproduit.ref_art], Qt::CaseInsensitive) != 0)
            fault(QStringLiteral("article %1, %2 dans l'ancillaire %3").arg(unit[strproduit.ref_art], article, set));
        else if (type.compare(unit[strproduit.stk_anc_cod], Qt::CaseInsensitive) != 0)
            fault(QStringLiteral("ancillaire %1 de code %2, %3 sur l'unité")
                      .arg(set, type, unit[strproduit.stk_anc_cod]));
    }
    for (auto place = places.begin(); place != places.end(); ++place)
        faults.append({SetsFile, place.key(),
                       QStringLiteral("dans l'ancillaire %1, mais pas dans cet état").arg(place->set), &kind::Sets});
}

} // namespace molven::check

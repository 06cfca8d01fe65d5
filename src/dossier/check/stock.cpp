#include "dossier/check/checks.h"

#include "reference/articles.h"
#include "reference/parameters.h"
#include "stock/stock_tables.h"
#include "stock/units.h"

#include <QSet>

namespace molven::check {

namespace {

const QString MolvenFile = QStringLiteral("molven.mdb"), SetsFile = QStringLiteral("ancillaire.mdb");

} // namespace

QHash<QString, qint64> unitsInStock(Database molven) {
    QHash<QString, qint64> counted;
    const auto counts = molven.countBy(strproduit, strproduit.ref_art, strproduit.tes_vte != state::Sold);
    for (auto count = counts.begin(); count != counts.end(); ++count) counted[count.key().toUpper()] += count.value();
    return counted;
}

void checkQuantities(references::Files& files, Faults& faults) {
    QHash<QString, qint64> inStock = unitsInStock(files[DataFile::Molven]);
    for (const Record& row : files[DataFile::Molven].select(strarticle, strarticle.art_aig == follow_up::ByUnit)) {
        const QString reference = row[strarticle.art_ref];
        const Decimal counted = static_cast<long long>(inStock.take(reference.toUpper()));
        if (const Decimal stock = row[strarticle.art_stk]; stock != counted)
            faults.append({MolvenFile,
                           reference,
                           QStringLiteral("art_stk = %1 pour %2 unités").arg(stock.toString(), counted.toString()),
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
    QString set, depot, article;
};

} // namespace

void checkSets(references::Files& files, Faults& faults) {
    QHash<QString, SetPlace> places; // by unit
    for (const Record& line : files[DataFile::Ancillaire].select(strstock, strstock.stk_imm_art != QString())) {
        const QString unit = line[strstock.stk_imm_art];
        if (places.contains(unit))
            faults.append({SetsFile, unit, QStringLiteral("sur deux lignes d'ancillaire"), &kind::Sets});
        places.insert(unit, {line[strstock.stk_anc_imm], line[strstock.stk_num_dep], line[strstock.stk_ref_art]});
    }
    const Criterion concerned = strproduit.tes_vte == state::InSet || strproduit.stk_anc_imm != QString();
    for (const Record& unit : files[DataFile::Molven].select(strproduit, concerned)) {
        const QString number = unit[strproduit.imm_art];
        const auto [set, depot, article] = places.take(number);
        const auto fault = [&](const QString& text) { faults.append({MolvenFile, number, text, &kind::Sets}); };
        if (set.isEmpty())
            fault(QStringLiteral("dans un ancillaire qui ne la contient pas"));
        else if (unit[strproduit.tes_vte] != state::InSet || unit[strproduit.stk_anc_imm] != set)
            fault(QStringLiteral("dans l'ancillaire %1, mais pas dans cet état").arg(set));
        else if (unit[strproduit.num_dep] != depot)
            fault(QStringLiteral("dépôt %1, son ancillaire %2 est en %3").arg(unit[strproduit.num_dep], set, depot));
        else if (article.compare(unit[strproduit.ref_art], Qt::CaseInsensitive) != 0)
            fault(QStringLiteral("article %1, %2 dans l'ancillaire %3").arg(unit[strproduit.ref_art], article, set));
    }
    for (auto place = places.begin(); place != places.end(); ++place)
        faults.append({SetsFile, place.key(),
                       QStringLiteral("dans l'ancillaire %1, mais pas dans cet état").arg(place->set), &kind::Sets});
}

} // namespace molven::check

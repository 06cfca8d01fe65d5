#include "dossier.h"

#include "data/database.h"
#include "dossier/creation.h"
#include "dossier/demo_reference.h"
#include "reference/articles.h"
#include "sales/document_tables.h"
#include "stock/units.h"

#include <QDate>
#include <QDir>
#include <QFile>

namespace molven::bench {

namespace {

constexpr int UnitsPerMonth = 9000;
constexpr int UnitsPerLot = 500;

void fillUnits(Database molven, Database vente, int count) {
    Record unit(strproduit), header(strlive), line(strlivl), hidden(strlivl);
    unit[strproduit.ref_art] = Article;
    unit[strproduit.pro_li1] = QStringLiteral("COMPOSANT FEMORAL GENOU TAILLE 1");
    unit[strproduit.pro_typ] = QStringLiteral("N");
    unit[strproduit.pro_ann] = QStringLiteral("20");
    header[strlive.fac_clt] = Client;
    line[strlivl.fac_clt] = Client;
    header[strlive.fac_lg] = QStringLiteral("ENT");
    header[strlive.fac_cpt] = QStringLiteral("N");
    header[strlive.fac_aa] = QStringLiteral("2026");
    for (Record* made : {&line, &hidden}) (*made)[strlivl.fac_aa] = QStringLiteral("2026");
    hidden[strlivl.fac_lg] = QStringLiteral("000");
    line[strlivl.fac_lg] = QStringLiteral("001");
    line[strlivl.fac_ref] = Article;
    line[strlivl.fac_qte] = Decimal(1);
    int documents = 0;
    for (int i = 0; i < count; ++i) {
        const QDate month = QDate(2016, 1, 1).addMonths(i / UnitsPerMonth);
        const QString number =
            month.toString(QStringLiteral("yyMM")) + QString::number(i % UnitsPerMonth + 1).rightJustified(4, u'0');
        const bool delivered = i % 10 < 3 && documents < 300'000;
        const QString document = delivered ? QString::number(++documents).rightJustified(6, u'0') : QString();
        unit[strproduit.imm_art] = number;
        unit[strproduit.dat_per] =
            QDate(2027, 1, 1).addMonths(i / UnitsPerLot % 60).toString(QStringLiteral("MM/yyyy"));
        unit[strproduit.lot_art] = QStringLiteral("LOT%1").arg(i / UnitsPerLot);
        unit[strproduit.tes_vte] = delivered ? state::Delivered : state::InStock;
        unit[strproduit.num_dep] = delivered ? QStringLiteral("101") : QStringLiteral("001");
        unit[strproduit.num_vte] = document;
        unit[strproduit.reg_pat] = delivered ? QStringLiteral("PATIENT %1").arg(i) : QString();
        molven.insert(unit);
        if (!delivered) continue;
        header[strlive.fac_no] = document;
        for (Record* made : {&line, &hidden}) (*made)[strlivl.fac_no] = document;
        line[strlivl.fac_imm] = number;
        vente.insert(header);
        vente.insert(hidden);
        vente.insert(line);
    }
    articles::moveStock(molven, Article, Decimal(count));
}

void fillArticles(Database molven) {
    Record article(strarticle);
    article[strarticle.art_aig] = follow_up::ByMovements;
    article[strarticle.art_tva] = QStringLiteral("1");
    for (int i = 0; i < 50'000; ++i) {
        article[strarticle.art_ref] = QStringLiteral("A%1").arg(i, 5, 10, QLatin1Char('0'));
        article[strarticle.art_li1] = QStringLiteral("IMPLANT %1 TAILLE %2").arg(i % 997).arg(i % 31);
        article[strarticle.art_lpp] = i < 20'000 ? PushedLpp : QStringLiteral("3100000");
        molven.insert(article);
    }
}

} // namespace

Session generate(const QString& folder, int units) {
    const QString complete = folder + QStringLiteral("/complet-4");
    if (QFile::exists(complete)) return creation::open(folder);
    QDir(folder).removeRecursively();
    const Session session = creation::create({folder, QStringLiteral("CE"), QStringLiteral("BANC D'ESSAI"), false});
    demo::Dice dice(1);
    demo::fillReference(session, dice);
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    Transaction transaction(workspace);
    fillArticles(molven);
    fillUnits(molven, vente, units);
    transaction.commit();
    QFile mark(complete);
    return mark.open(QIODevice::WriteOnly) ? session : Session();
}

} // namespace molven::bench

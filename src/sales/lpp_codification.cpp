#include "sales/lpp_codification.h"

#include "data/database.h"
#include "reference/articles.h"
#include "reference/tariff_tables.h"
#include "sales/document_tables.h"
#include "sales/documents.h"
#include "stock/unit_tables.h"

namespace molven::lpp_codification {

namespace {

/// Gives the article of a TIPS code its LPP code, or tells why not.
std::optional<Fault> codify(Database molven, const Record& article) {
    const QString tips = article[strarticle.art_tip];
    const Recordset matches = molven.select(strlpp, strlpp.lpp_tips == tips);
    if (matches.count() != 1)
        return Fault{article[strarticle.art_ref], article[strarticle.art_li1], tips,
                     matches.isEmpty() ? QStringLiteral("Inconnu") : QStringLiteral("Multiple")};
    molven.update(strarticle, {{strarticle.art_lpp, matches.at(0)[strlpp.lpp_code]}},
                  strarticle.art_ref == article[strarticle.art_ref]);
    return std::nullopt;
}

/// Every unit follows its article, even one that is no longer followed by unit.
void carryIntoUnits(Database molven, const Progress& told) {
    const QStringList references = molven.countBy(strproduit, strproduit.ref_art).keys();
    for (qsizetype i = 0; i < references.size(); ++i) {
        const QString& reference = references[i];
        tell(told, i, references.size());
        if (const auto article = articles::find(molven, reference))
            molven.update(strproduit, {{strproduit.pro_lpp, (*article)[strarticle.art_lpp]}},
                          strproduit.ref_art == reference);
    }
}

void carryIntoOpenNotes(Database molven, Database vente, const Progress& told) {
    const Recordset notes = vente.select(strlive, !(strlive.fac_cpt == documents::Transferred));
    qsizetype done = 0;
    for (const Record& note : notes) {
        tell(told, done++, notes.count());
        const Criterion lines = strlivl.fac_no == note[strlive.fac_no] && strlivl.fac_aa == note[strlive.fac_aa] &&
                                strlivl.fac_lg != QStringLiteral("000");
        for (const QString& reference : vente.countBy(strlivl, strlivl.fac_ref, lines).keys()) {
            const auto article = articles::find(molven, reference);
            const QString lpp = article ? QString((*article)[strarticle.art_lpp]) : QString();
            if (!lpp.isEmpty() && lpp != SeveralLpp)
                vente.update(strlivl, {{strlivl.fac_tip, lpp}}, lines && strlivl.fac_ref == reference);
        }
    }
}

} // namespace

QList<Fault> run(const Session& session, const std::function<Progress(const QString& title)>& step) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    Transaction transaction(workspace, QStringLiteral("Codification LPP"));
    QList<Fault> faults;
    const Recordset articles = molven.select(strarticle, strarticle.art_tip != QString(), strarticle.art_ref);
    Progress told = step(QStringLiteral("Mise à Jour des fiches Articles"));
    qsizetype done = 0;
    for (const Record& article : articles) {
        tell(told, done++, articles.count());
        if (const auto fault = codify(molven, article)) faults.append(*fault);
    }
    told = step(QStringLiteral("Mise à jour des des fiches Produits"));
    carryIntoUnits(molven, told);
    told = step(QStringLiteral("Mise à jour des des lignes des Bons Livraison"));
    carryIntoOpenNotes(molven, vente, told);
    transaction.commit();
    return faults;
}

} // namespace molven::lpp_codification

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

void carryIntoUnits(Database molven) {
    for (const Record& article : molven.select(strarticle, strarticle.art_aig == follow_up::ByUnit))
        molven.update(strproduit, {{strproduit.pro_lpp, article[strarticle.art_lpp]}},
                      strproduit.ref_art == article[strarticle.art_ref]);
}

void carryIntoOpenNotes(Database molven, Database vente) {
    for (const Record& note : vente.select(strlive, !(strlive.fac_cpt == documents::Transferred))) {
        const Criterion lines = strlivl.fac_no == note[strlive.fac_no] && strlivl.fac_aa == note[strlive.fac_aa] &&
                                strlivl.fac_lg != QStringLiteral("000");
        for (const QString& reference : vente.countBy(strlivl, strlivl.fac_ref, lines).keys()) {
            const auto article = articles::find(molven, reference);
            const QString lpp = article ? QString(std::as_const(*article)[strarticle.art_lpp]) : QString();
            if (!lpp.isEmpty() && lpp != SeveralLpp)
                vente.update(strlivl, {{strlivl.fac_tip, lpp}}, lines && strlivl.fac_ref == reference);
        }
    }
}

} // namespace

QList<Fault> run(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    Transaction transaction(workspace, QStringLiteral("Codification LPP"));
    QList<Fault> faults;
    for (const Record& article : molven.select(strarticle, strarticle.art_tip != QString(), strarticle.art_ref))
        if (const auto fault = codify(molven, article)) faults.append(*fault);
    carryIntoUnits(molven);
    carryIntoOpenNotes(molven, vente);
    transaction.commit();
    return faults;
}

} // namespace molven::lpp_codification

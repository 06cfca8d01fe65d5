#include "stock/endowments.h"

#include "data/require.h"
#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "stock/depot_tables.h"

namespace molven::endowments {

namespace {

constexpr int MostUnits = 9999;

void complete(Database molven, Record& endowment) {
    const Record& read = endowment;
    const auto depot = codes::find(molven, codes::Depot, read[strdotation.dot_dep]);
    require(depot.has_value(), "Ce dépôt n'existe pas", strdotation.dot_dep);
    endowment[strdotation.dot_dep] = depot->value(strparam.num_par);
    require(read[strdotation.dot_dep] != MainDepot, "Le dépôt principal fournit les autres : pas de dotation",
            strdotation.dot_dep);
    require(read[strdotation.dot_dep] != SetDepot, "Le dépôt des ancillaires n'a pas de dotation", strdotation.dot_dep);
    const auto article = articles::find(molven, read[strdotation.dot_ref]);
    require(article.has_value(), "Cet article n'existe pas", strdotation.dot_ref);
    require(article->value(strarticle.art_aig) == follow_up::ByUnit, "Cet article n'est pas suivi à l'unité",
            strdotation.dot_ref);
    endowment[strdotation.dot_ref] = article->value(strarticle.art_ref);
    endowment[strdotation.dot_lib] = article->value(strarticle.art_li1);
    const Decimal quantity = read[strdotation.dot_qte];
    require(quantity > Decimal() && quantity <= Decimal(MostUnits) && quantity == quantity.rounded(0),
            "Quantité incorrecte", strdotation.dot_qte);
}

} // namespace

const CodeTable& table() {
    static const CodeTable kind{strdotation,
                                {&strdotation.dot_dep, &strdotation.dot_ref},
                                {{strdotation.dot_dep, QStringLiteral("Dépôt obligatoire")},
                                 {strdotation.dot_ref, QStringLiteral("Référence obligatoire")},
                                 {strdotation.dot_qte, QStringLiteral("Quantité obligatoire")}},
                                QStringLiteral("Cette dotation existe déjà"),
                                QStringLiteral("Cette dotation n'existe pas"),
                                complete};
    return kind;
}

} // namespace molven::endowments

#include "sales/document_kind.h"

#include "data/errors.h"
#include "stock/units.h"

#include <algorithm>

namespace molven {

const QList<DocumentKind>& documentKinds() {
    static const QList<DocumentKind> kinds{
        {QStringLiteral("LIV"), strlive, strlivl, QStringLiteral("Gestion des Bons de Livraison"),
         QStringLiteral("Bon de Livraison"), QStringLiteral("Bon de Livraison"),
         QStringLiteral("LES BONS DE LIVRAISON"), state::Delivered, false, false, true,
         QStringLiteral("un bon de livraison : voir la gestion des bons de livraison")},
        {QStringLiteral("CSG"), strcsge, strcsgl, QStringLiteral("Gestion des Bons de Consignation"),
         QStringLiteral("Bon de consignation"), QStringLiteral("Bon de Consignation"),
         QStringLiteral("LES BONS DE CONSIGNATION"), state::Sold, false, true, false,
         QStringLiteral("un bon de consignation : voir la gestion des bons de consignation")},
        {QStringLiteral("FAC"), strface, strfacl, QStringLiteral("Gestion des Factures"),
         QStringLiteral("Facture/Avoir"), QStringLiteral("Facture"), QStringLiteral("LES FACTURES"), state::Sold, false,
         false, false, QStringLiteral("une facture : voir la gestion des factures")},
        {QStringLiteral("AVO"), strface, strfacl, QStringLiteral("Gestion des Avoirs"), QStringLiteral("Facture/Avoir"),
         QStringLiteral("Avoir"), QStringLiteral("LES FACTURES"), state::InStock, true, false, false,
         QStringLiteral("un avoir : voir la gestion des avoirs")},
        {QStringLiteral("AVG"), strcsge, strcsgl, QStringLiteral("Gestion des Avoirs Bons Consignation"),
         QStringLiteral("Bon de consignation"), QStringLiteral("Avoir Bons"),
         QStringLiteral("LES BONS DE CONSIGNATION"), state::InStock, true, true, false,
         QStringLiteral("un avoir de bons de consignation : voir la gestion des avoirs bons consignation")},
    };
    return kinds;
}

const DocumentKind& documentKind(const QString& mode) {
    const auto found = std::find_if(documentKinds().begin(), documentKinds().end(),
                                    [&mode](const DocumentKind& kind) { return kind.mode == mode; });
    if (found == documentKinds().end()) throw Refusal(QStringLiteral("Type de document inconnu : ") + mode);
    return *found;
}

} // namespace molven

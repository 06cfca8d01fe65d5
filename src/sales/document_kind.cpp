#include "sales/document_kind.h"

#include "stock/units.h"

#include <algorithm>

namespace molven {

namespace {

const QString NoDocument = QStringLiteral(" Aucun document pour ce client");
const QString OpenOnSales = QStringLiteral("modifs possibles : chirurgien/transport/bon/patient/lignes ");

QList<WatchedField> openOnTransfers(const DocumentHeaders& table) {
    return {{&table.fac_trs, "Le transport a été modifié"},
            {&table.fac_btr, "Le bon a été modifié"},
            {&table.fac_pat, "Le patient a été modifié"}};
}

QList<WatchedField> openOnSales(const DocumentHeaders& table) {
    return QList<WatchedField>{{&table.fac_chr, "Le chirurgien a été modifié"}} + openOnTransfers(table);
}

} // namespace

namespace {

std::vector<DocumentKind> kindsOfSales() {
    return {
        {.mode = QStringLiteral("LIV"),
         .headers = strlive,
         .lines = strlivl,
         .depot = strlive.fac_dep,
         .title = QStringLiteral("Gestion des Bons de Livraison"),
         .label = QStringLiteral("Bon de Livraison"),
         .shownLabel = QStringLiteral("Bon de Livraison"),
         .listTitle = QStringLiteral("LES BONS DE LIVRAISON"),
         .noneListed = NoDocument,
         .unitState = state::Delivered,
         .isDeletable = true,
         .open = openOnSales(strlive),
         .openWords = OpenOnSales,
         .confirmDeletion = QStringLiteral("Etes-vous sûr de vouloir supprimer ce Bon Livraison ? "),
         .transferredWords = QStringLiteral("Bon Livraison facturé !!! impossible")},
        {.mode = QStringLiteral("CSG"),
         .headers = strcsge,
         .lines = strcsgl,
         .depot = strcsge.fac_dep,
         .title = QStringLiteral("Gestion des Bons de Consignation"),
         .label = QStringLiteral("Bon de consignation"),
         .shownLabel = QStringLiteral("Bon de Consignation"),
         .listTitle = QStringLiteral("LES BONS DE CONSIGNATION"),
         .noneListed = NoDocument,
         .unitState = state::Sold,
         .isConsignment = true,
         .open = openOnSales(strcsge),
         .openWords = OpenOnSales,
         .whereabouts = QStringLiteral("un bon de consignation : voir la gestion des bons de consignation")},
        {.mode = QStringLiteral("FAC"),
         .headers = strface,
         .lines = strfacl,
         .depot = strface.fac_dep,
         .title = QStringLiteral("Gestion des Factures"),
         .label = QStringLiteral("Facture/Avoir"),
         .shownLabel = QStringLiteral("Facture"),
         .listTitle = QStringLiteral("LES FACTURES"),
         .noneListed = NoDocument,
         .unitState = state::Sold,
         .open = openOnSales(strface),
         .openWords = OpenOnSales,
         .whereabouts = QStringLiteral("une facture : voir la gestion des factures")},
        {.mode = QStringLiteral("AVO"),
         .headers = strface,
         .lines = strfacl,
         .depot = strface.fac_dep,
         .title = QStringLiteral("Gestion des Avoirs"),
         .label = QStringLiteral("Facture/Avoir"),
         .shownLabel = QStringLiteral("Avoir"),
         .listTitle = QStringLiteral("LES FACTURES"),
         .noneListed = NoDocument,
         .unitState = state::InStock,
         .isCredit = true,
         .open = openOnSales(strface),
         .openWords = OpenOnSales,
         .whereabouts = QStringLiteral("un avoir : voir la gestion des avoirs")},
        {.mode = QStringLiteral("AVG"),
         .headers = strcsge,
         .lines = strcsgl,
         .depot = strcsge.fac_dep,
         .title = QStringLiteral("Gestion des Avoirs Bons Consignation"),
         .label = QStringLiteral("Bon de consignation"),
         .shownLabel = QStringLiteral("Avoir Bons"),
         .listTitle = QStringLiteral("LES BONS DE CONSIGNATION"),
         .noneListed = NoDocument,
         .unitState = state::InStock,
         .isCredit = true,
         .isConsignment = true,
         .open = openOnSales(strcsge),
         .openWords = OpenOnSales,
         .whereabouts =
             QStringLiteral("un avoir de bons de consignation : voir la gestion des avoirs bons consignation")},
        {.mode = QStringLiteral("BTR"),
         .headers = strbtre,
         .lines = strbtrl,
         .depot = strbtre.fac_depa,
         .title = QStringLiteral("Gestion des Bons de Transfert"),
         .label = QStringLiteral("Bon de Transfert"),
         .shownLabel = QStringLiteral("Bon de Transfert"),
         .listTitle = QStringLiteral("LES BONS DE TRANSFERT"),
         .noneListed = QStringLiteral("Aucun Bon de transfert pour ce client"),
         .unitState = state::InStock,
         .isPriced = false,
         .open = openOnTransfers(strbtre),
         .openWords = QStringLiteral("modifs possibles : transport/bon/patient/les lignes")},
    };
}

const QString NothingOnIt = QStringLiteral("Aucune ligne sur ce document, nous le supprimons");

DocumentKind proforma(const QString& name, const QString& plural) {
    return {.mode = QStringLiteral("PROFORMA"),
            .headers = strface,
            .lines = strfacl,
            .depot = strface.fac_dep,
            .title = QStringLiteral("Gestion des ") + plural,
            .label = name,
            .shownLabel = name,
            .listTitle = QStringLiteral("LES ") + plural.toUpper(),
            .noneListed = NoDocument,
            .unitState = {},
            .isDeletable = true,
            .open = {{&strface.fac_pat, "Le patient a été modifié"}},
            .openWords = QStringLiteral("modifs possibles : patient/lignes "),
            .file = DataFile::Proforma,
            .hasUnits = false,
            .movesStock = false,
            .confirmDeletion = QStringLiteral("Etes-vous sûr de vouloir supprimer cette Proforma ? "),
            .transferredWords = QStringLiteral("Proforma transféré !!! impossible"),
            .droppedWords = NothingOnIt};
}

/// Invoices and credit notes of articles that are not followed by unit.
DocumentKind ofSecondBook(const DocumentKind& sale) {
    DocumentKind kind = sale;
    kind.file = DataFile::Ostrane;
    kind.unitState.clear();
    kind.hasUnits = false;
    kind.takesTrackedArticles = false;
    kind.notDeletable = QStringLiteral("Impossible de supprimer une Facture ou un Avoir ");
    kind.droppedWords = NothingOnIt;
    return kind;
}

std::vector<DocumentKind> allKinds() {
    std::vector<DocumentKind> kinds = kindsOfSales();
    kinds.push_back(proforma(QStringLiteral("Proforma"), QStringLiteral("Proformas")));
    for (const DocumentKind& sale : kindsOfSales())
        if (&sale.headers == &strface) kinds.push_back(ofSecondBook(sale));
    return kinds;
}

} // namespace

const std::vector<DocumentKind>& documentKinds() {
    static const std::vector<DocumentKind> kinds = allKinds();
    return kinds;
}

const DocumentKind& documentKind(const QString& mode, DataFile file) {
    const auto found = std::find_if(documentKinds().begin(), documentKinds().end(),
                                    [&](const DocumentKind& kind) { return kind.mode == mode && kind.file == file; });
    if (found == documentKinds().end()) throw Refusal(QStringLiteral("Type de document inconnu : ") + mode);
    return *found;
}

const DocumentKind& proformaKind(const CompanyRules& rules) {
    static const DocumentKind quotes = proforma(QStringLiteral("Devis"), QStringLiteral("Devis"));
    return rules.callsProformasQuotes() ? quotes : documentKind(QStringLiteral("PROFORMA"), DataFile::Proforma);
}

} // namespace molven

#include "sales/archiving.h"

#include "data/dates.h"
#include "sales/document_archive.h"
#include "stock/unit_archive.h"
#include "stock/unit_tables.h"

namespace molven::archiving {

QList<Moved> moveBefore(const Session& session, archive::Direction direction, const QDate& day,
                        const Progress& progress) {
    const bool archives = direction == archive::Direction::ToHistory;
    const QString deed = archives ? QStringLiteral("Archivage") : QStringLiteral("Réactualisation"), key = sortKey(day);
    Workspace workspace;
    Database molven = workspace.open(session.molven()), vente = workspace.open(session.vente()),
             historic = workspace.open(session.historic());
    QList<Moved> all;
    const auto move = [&](const QString& family, Database working, const archive::Subject& subject,
                          const Criterion& which) {
        all.append({family, archive::move(archives ? working : historic, archives ? historic : working, subject, which,
                                          deed, progress)});
    };
    const std::pair<const char*, const char*> families[] = {{"LIV", "bons de livraison"},
                                                            {"FAC", "factures et avoirs"},
                                                            {"CSG", "bons de consignation"},
                                                            {"BTR", "bons de transfert"}};
    for (const auto& [mode, family] : families) {
        const DocumentKind& kind = documentKind(QString::fromLatin1(mode));
        const Text& date = kind.headers.tri_datf;
        move(QString::fromLatin1(family), vente, document_archive::subject(kind),
             document_archive::eligible(kind, direction) && date < key && date != QString());
    }
    const Text& sold = strproduit.tri_vte;
    move(QStringLiteral("produits"), molven, unit_archive::subject(),
         unit_archive::eligible() && sold < key && sold != QString());
    return all;
}

} // namespace molven::archiving

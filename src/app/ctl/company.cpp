#include "app/ctl/command.h"

#include "data/database.h"
#include "reference/seller.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

Command companyCommand() {
    return {QStringLiteral("societe"),
            QStringLiteral("montre, ou change, l'adresse de la société sur ses lettres"),
            QStringLiteral("DIR"),
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption(jsonOption());
                options.addOption({QStringLiteral("adresse"),
                                   QStringLiteral("une ligne de l'adresse, jusqu'à quatre fois ; remplace l'adresse"),
                                   QStringLiteral("LIGNE")});
            },
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                const Session session = sessionOf(parser, arguments[0]);
                Workspace workspace;
                const Database molven = workspace.open(session.molven());
                if (const QStringList typed = parser.values(QStringLiteral("adresse")); !typed.isEmpty())
                    seller::setAddress(molven, typed);
                const QStringList address = seller::addressLines(seller::read(molven));
                if (wantsJson(parser)) {
                    sayData(QJsonObject{{QStringLiteral("nom"), session.spe_nom},
                                        {QStringLiteral("adresse"), QJsonArray::fromStringList(address)}});
                    return 0;
                }
                say(session.spe_nom);
                for (const QString& line : address) say(line);
                return 0;
            },
            1};
}

} // namespace molven::ctl

#include "app/ctl/command.h"

#include "dossier/creation.h"

#include <QCommandLineParser>

namespace molven::ctl {

Command createCommand() {
    return {QStringLiteral("create"),
            QStringLiteral("crée une installation neuve dans DIR"),
            QStringLiteral("DIR"),
            [](Options& options) {
                options.addOptions(
                    {{QStringLiteral("code"), QStringLiteral("code société, deux lettres"), QStringLiteral("CE")},
                     {QStringLiteral("nom"), QStringLiteral("nom de la société"), QStringLiteral("nom")},
                     {QStringLiteral("societe"), QStringLiteral("ajoute le dossier à societe.mdb")},
                     serverOption()});
            },
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                const Session session =
                    creation::create({creation::placeOf(arguments[0]), parser.value(QStringLiteral("code")),
                                      parser.value(QStringLiteral("nom")), parser.isSet(QStringLiteral("societe")),
                                      parser.value(QStringLiteral("serveur"))});
                say(QStringLiteral("installation créée : ") + session.dossier_app);
                say(QStringLiteral("données : ") + session.chemin_base);
                return 0;
            },
            1};
}

} // namespace molven::ctl

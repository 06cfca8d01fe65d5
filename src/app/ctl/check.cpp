#include "app/ctl/command.h"

#include "dossier/check.h"
#include "dossier/creation.h"
#include "dossier/exposure.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace molven::ctl {

Command checkCommand() {
    return {QStringLiteral("check"),
            QStringLiteral("contrôle un dossier, sans rien y changer"),
            QStringLiteral("DIR"),
            [](QCommandLineParser& parser) {
                parser.addOption({QStringLiteral("json"), QStringLiteral("résultat en JSON")});
            },
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                const Session session = creation::open(arguments[0]);
                const QList<check::Fault> faults = check::run(session);
                if (const QStringList exposed = exposure::readableByAll(session); !exposed.isEmpty())
                    complain(QStringLiteral("avertissement : tout le monde peut lire ") +
                             exposed.join(QStringLiteral(", ")));
                QJsonArray array;
                for (const check::Fault& fault : faults) {
                    array.append(QJsonObject{{QStringLiteral("fichier"), fault.file},
                                             {QStringLiteral("objet"), fault.subject},
                                             {QStringLiteral("defaut"), fault.text}});
                    if (!parser.isSet(QStringLiteral("json")))
                        say(QStringLiteral("%1 : %2 : %3").arg(fault.file, fault.subject, fault.text));
                }
                if (parser.isSet(QStringLiteral("json")))
                    say(QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)));
                else
                    say(faults.isEmpty() ? QStringLiteral("dossier sain")
                                         : QStringLiteral("défauts : %1").arg(faults.size()));
                return faults.isEmpty() ? 0 : 1;
            },
            1};
}

} // namespace molven::ctl

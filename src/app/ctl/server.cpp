#include "app/ctl/command.h"

#include "data/errors.h"
#include "data/server_address.h"
#include "data/server_setup.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

const QString Preparing = QStringLiteral("preparer");

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    const QString& address = arguments[0];
    if (!server_address::isOne(address))
        throw Refusal(QStringLiteral("Adresse de serveur incorrecte : %1").arg(address));
    if (parser.isSet(Preparing))
        for (const QString& line : server_setup::prepare(address)) wantsJson(parser) ? complain(line) : say(line);
    const QStringList faults = server_setup::faults(address);
    if (wantsJson(parser)) {
        sayData(QJsonObject{{QStringLiteral("defauts"), QJsonArray::fromStringList(faults)}});
    } else {
        for (const QString& fault : faults) say(fault);
        if (faults.isEmpty()) say(QStringLiteral("serveur prêt"));
    }
    return faults.isEmpty() ? 0 : 1;
}

} // namespace

Command serverCommand() {
    return {QStringLiteral("serveur"),
            QStringLiteral("contrôle la base d'un serveur, ou la prépare"),
            QStringLiteral("ADRESSE"),
            [](Options& options) {
                options.addOptions(
                    {{Preparing, QStringLiteral("crée la base et ses rôles, s'ils n'y sont pas")}, jsonOption()});
            },
            run,
            1};
}

} // namespace molven::ctl

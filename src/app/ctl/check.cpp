#include "app/ctl/command.h"

#include "dossier/check.h"
#include "dossier/exposure.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

namespace molven::ctl {

namespace {

void sayFaults(const QList<check::Fault>& faults) {
    QMap<QString, qsizetype> counts;
    QMap<QString, QString> remedies;
    for (const check::Fault& fault : faults) {
        say(QStringLiteral("%1 : %2 : %3").arg(fault.file, fault.subject, fault.text));
        ++counts[fault.kind->name];
        remedies[fault.kind->name] = fault.kind->remedy;
    }
    for (auto count = counts.begin(); count != counts.end(); ++count)
        say(QStringLiteral("%1 : %2 ; à faire : %3").arg(count.key()).arg(count.value()).arg(remedies[count.key()]));
    say(faults.isEmpty() ? QStringLiteral("dossier sain") : QStringLiteral("défauts : %1").arg(faults.size()));
}

} // namespace

QJsonArray faultData(const QList<check::Fault>& faults) {
    QJsonArray array;
    for (const check::Fault& fault : faults)
        array.append(QJsonObject{{QStringLiteral("fichier"), fault.file},
                                 {QStringLiteral("objet"), fault.subject},
                                 {QStringLiteral("defaut"), fault.text},
                                 {QStringLiteral("genre"), fault.kind->name},
                                 {QStringLiteral("remede"), fault.kind->remedy}});
    return array;
}

namespace {

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    const Session session = sessionOf(parser, arguments[0]);
    const bool isJson = wantsJson(parser);
    if (parser.isSet(QStringLiteral("reparer")))
        for (const QString& line : check::repair(session))
            isJson ? complain(line) : say(QStringLiteral("réparé : ") + line);
    const QList<check::Fault> faults = check::run(session);
    if (const QStringList exposed = exposure::readableByAll(session); !exposed.isEmpty())
        complain(QStringLiteral("avertissement : tout le monde peut lire ") + exposed.join(QStringLiteral(", ")));
    isJson ? sayData(faultData(faults)) : sayFaults(faults);
    return faults.isEmpty() ? 0 : 1;
}

} // namespace

Command checkCommand() {
    return {QStringLiteral("check"),
            QStringLiteral("contrôle un dossier ; ne change rien sans --reparer"),
            QStringLiteral("DIR"),
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption(jsonOption());
                options.addOption({QStringLiteral("reparer"),
                                   QStringLiteral("recompte les stocks, recalcule les totaux et refait les index, puis "
                                                  "contrôle")});
            },
            run,
            1};
}

} // namespace molven::ctl

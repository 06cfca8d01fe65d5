#include "app/ctl/command.h"

#include "data/errors.h"
#include "data/format.h"
#include "dossier/upkeep.h"

#include <QCommandLineParser>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

const QString Kept = QStringLiteral("garder");

QString sizeOf(qint64 bytes) {
    return format(Decimal(static_cast<long long>(bytes / 1024)), QStringLiteral("### ### ##0")) + QStringLiteral(" Ko");
}

bool sayVerified(const QList<upkeep::Verified>& all) {
    bool areSound = true;
    for (const upkeep::Verified& one : all) {
        for (const QString& fault : one.faults) say(QStringLiteral("%1 : %2").arg(one.folder, fault));
        if (one.faults.isEmpty())
            say(QStringLiteral("%1 : %2, %3, sauvegarde saine")
                    .arg(QDir::toNativeSeparators(one.folder), counted(one.files, QStringLiteral("fichier")),
                         sizeOf(one.bytes)));
        areSound = areSound && one.faults.isEmpty();
    }
    return areSound;
}

QJsonObject dataOf(const upkeep::Verified& one) {
    return {{QStringLiteral("dossier"), one.folder},
            {QStringLiteral("fichiers"), one.files},
            {QStringLiteral("octets"), one.bytes},
            {QStringLiteral("defauts"), QJsonArray::fromStringList(one.faults)}};
}

int backUp(const QCommandLineParser& parser, const QStringList& arguments) {
    bool isNumber = true;
    const int kept = parser.isSet(Kept) ? parser.value(Kept).toInt(&isNumber) : 0;
    if (!isNumber || (parser.isSet(Kept) && kept < 1))
        throw Refusal(QStringLiteral("Le nombre de sauvegardes à garder est incorrect : %1").arg(parser.value(Kept)));
    const Session session = sessionOf(parser, arguments[0]);
    const QString folder = upkeep::addGeneration(session, QDir(arguments[1]).absolutePath(), kept, {});
    const QList<upkeep::Verified> made = upkeep::verify(folder);
    if (wantsJson(parser)) {
        sayData(dataOf(made.first()));
        return made.first().faults.isEmpty() ? 0 : 1;
    }
    say(QStringLiteral("sauvegarde : ") + QDir::toNativeSeparators(folder));
    return sayVerified(made) ? 0 : 1;
}

int verify(const QCommandLineParser& parser, const QStringList& arguments) {
    const QList<upkeep::Verified> all = upkeep::verify(arguments[0]);
    if (!wantsJson(parser)) return sayVerified(all) ? 0 : 1;
    QJsonArray told;
    bool areSound = true;
    for (const upkeep::Verified& one : all) {
        told.append(dataOf(one));
        areSound = areSound && one.faults.isEmpty();
    }
    sayData(told);
    return areSound ? 0 : 1;
}

} // namespace

Command backupCommand() {
    return {QStringLiteral("sauvegarde"),
            QStringLiteral("ajoute à CIBLE une sauvegarde datée et vérifiée du dossier"),
            QStringLiteral("DIR CIBLE"),
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption({Kept, QStringLiteral("ne garde que les N dernières"), QStringLiteral("N")});
                options.addOption(jsonOption());
            },
            backUp,
            2};
}

Command verifyCommand() {
    return {QStringLiteral("verifier"),
            QStringLiteral("relit en entier une sauvegarde, ou chacune d'un dossier de sauvegardes"),
            QStringLiteral("CIBLE"),
            [](Options& options) { options.addOption(jsonOption()); },
            verify,
            1};
}

} // namespace molven::ctl

#include "app/ctl/command.h"

#include "dossier/restoration.h"

#include <QCommandLineParser>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

const QString Partial = QStringLiteral("partielle");

int restore(const QCommandLineParser& parser, const QStringList& arguments) {
    const auto outcome =
        restoration::restore(arguments[0], arguments[1], parser.value(QStringLiteral("dossier")),
                             parser.isSet(Partial) ? restoration::Extent::Partial : restoration::Extent::Whole);
    if (wantsJson(parser)) {
        sayData(QJsonObject{{QStringLiteral("repris"), QJsonArray::fromStringList(outcome.files)},
                            {QStringLiteral("avant"), outcome.setAside}});
        return 0;
    }
    say(QStringLiteral("fichiers repris : ") + outcome.files.join(QStringLiteral(", ")));
    say(QStringLiteral("fichiers d'avant : ") + QDir::toNativeSeparators(outcome.setAside));
    return 0;
}

} // namespace

Command restoreCommand() {
    return {QStringLiteral("restaurer"),
            QStringLiteral("reprend les fichiers d'une sauvegarde, les autres postes étant fermés"),
            QStringLiteral("DIR SAUVEGARDE"),
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption({Partial, QStringLiteral("reprend une sauvegarde où des fichiers manquent")});
                options.addOption(jsonOption());
            },
            restore,
            2};
}

} // namespace molven::ctl

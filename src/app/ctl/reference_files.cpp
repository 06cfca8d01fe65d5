#include "app/ctl/command.h"

#include "data/errors.h"
#include "dossier/reference_files.h"

#include <QCommandLineParser>
#include <QFile>

namespace molven::ctl {

namespace {

QString kindsText() { return reference_files::kinds().join(u'|'); }

int bringIn(const QCommandLineParser& parser, const QStringList& arguments) {
    QFile file(arguments[2]);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(QStringLiteral("Impossible de lire le fichier %1 : %2").arg(arguments[2], file.errorString()));
    const auto outcome = reference_files::bringIn(sessionOf(parser, arguments[0]), arguments[1], file.readAll());
    if (!outcome.ignored.isEmpty())
        say(QStringLiteral("champs ignorés, tenus par le programme : ") + outcome.ignored.join(QStringLiteral(", ")));
    for (const reference_files::Fault& fault : outcome.faults)
        say(QStringLiteral("ligne %1 : %2").arg(fault.line).arg(fault.text));
    say(outcome.faults.isEmpty() ? QStringLiteral("enregistrements : %1").arg(outcome.written)
                                 : QStringLiteral("rien n'est écrit, lignes fautives : %1").arg(outcome.faults.size()));
    return outcome.faults.isEmpty() ? 0 : 1;
}

int takeOut(const QCommandLineParser& parser, const QStringList& arguments) {
    const QString path = arguments[2];
    requireWritable(parser, path);
    writeOut(parser, path, reference_files::takeOut(sessionOf(parser, arguments[0]), arguments[1]));
    say(QStringLiteral("fichier écrit : ") + path);
    return 0;
}

} // namespace

Command importCommand() {
    return {QStringLiteral("import"),
            QStringLiteral("reprend un fichier CSV : ") + kindsText(),
            QStringLiteral("DIR QUOI FICHIER.csv"),
            [](Options& options) { options.addOption(dossierOption()); },
            bringIn,
            3};
}

Command exportCommand() {
    return {QStringLiteral("export"),
            QStringLiteral("écrit un fichier CSV : ") + kindsText(),
            QStringLiteral("DIR QUOI FICHIER.csv"),
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption(replaceOption());
            },
            takeOut,
            3};
}

} // namespace molven::ctl

#include "app/ctl/command.h"

#include "data/errors.h"
#include "dossier/creation.h"
#include "dossier/reference_files.h"

#include <QCommandLineParser>
#include <QFile>
#include <QSaveFile>

namespace molven::ctl {

namespace {

QString kindsText() { return reference_files::kinds().join(u'|'); }

int bringIn(const QCommandLineParser&, const QStringList& arguments) {
    QFile file(arguments[2]);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(QStringLiteral("Impossible de lire le fichier %1 : %2").arg(arguments[2], file.errorString()));
    const auto outcome = reference_files::bringIn(creation::open(arguments[0]), arguments[1], file.readAll());
    for (const reference_files::Fault& fault : outcome.faults)
        say(QStringLiteral("ligne %1 : %2").arg(fault.line).arg(fault.text));
    say(outcome.faults.isEmpty() ? QStringLiteral("enregistrements : %1").arg(outcome.written)
                                 : QStringLiteral("rien n'est écrit, lignes fautives : %1").arg(outcome.faults.size()));
    return outcome.faults.isEmpty() ? 0 : 1;
}

int takeOut(const QCommandLineParser&, const QStringList& arguments) {
    const QByteArray bytes = reference_files::takeOut(creation::open(arguments[0]), arguments[1]);
    QSaveFile file(arguments[2]);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw Refusal(QStringLiteral("Impossible d'écrire le fichier %1 : %2").arg(arguments[2], file.errorString()));
    say(QStringLiteral("fichier écrit : ") + arguments[2]);
    return 0;
}

} // namespace

Command importCommand() {
    return {QStringLiteral("import"),
            QStringLiteral("reprend un fichier CSV : ") + kindsText(),
            QStringLiteral("DIR QUOI FICHIER.csv"),
            [](QCommandLineParser&) {},
            bringIn,
            3};
}

Command exportCommand() {
    return {QStringLiteral("export"),
            QStringLiteral("écrit un fichier CSV : ") + kindsText(),
            QStringLiteral("DIR QUOI FICHIER.csv"),
            [](QCommandLineParser&) {},
            takeOut,
            3};
}

} // namespace molven::ctl

#include "app/ctl/command.h"

#include "dossier/check.h"
#include "dossier/creation.h"
#include "dossier/migration.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace molven::ctl {

namespace {

void sayTables(const QList<migration::Moved>& tables) {
    for (const migration::Moved& table : tables) {
        say(QStringLiteral("%1 %2 : %3 lus, %4 repris%5")
                .arg(table.file, table.table)
                .arg(table.read)
                .arg(table.stored)
                .arg(table.differing.isEmpty() ? QStringLiteral(", sommes égales") : QString()));
        for (const QString& sum : table.differing) say(QStringLiteral("  somme différente, ") + sum);
    }
}

void sayJson(const QList<migration::Moved>& tables, qsizetype faults) {
    QJsonArray told;
    for (const migration::Moved& table : tables)
        told.append(QJsonObject{{QStringLiteral("fichier"), table.file},
                                {QStringLiteral("table"), table.table},
                                {QStringLiteral("lus"), table.read},
                                {QStringLiteral("repris"), table.stored},
                                {QStringLiteral("differences"), QJsonArray::fromStringList(table.differing)}});
    sayData(QJsonObject{{QStringLiteral("tables"), told}, {QStringLiteral("defauts"), faults}});
}

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    int told = -1;
    const auto outcome =
        migration::migrate(creation::placeOf(arguments[0]), parser.value(QStringLiteral("dossier")),
                           creation::placeOf(arguments[1]), [&told](int done, int total) {
                               if (const int tenth = done * 10 / std::max(total, 1); tenth != told)
                                   complain(QStringLiteral("... %1 %").arg(done * 100 / std::max(total, 1))),
                                       told = tenth;
                               return true;
                           });
    const qsizetype faults = check::run(outcome.session).size();
    if (wantsJson(parser)) {
        sayJson(outcome.tables, faults);
    } else {
        sayTables(outcome.tables);
        say(faults == 0 ? QStringLiteral("dossier sain")
                        : QStringLiteral("défauts : %1 ; le détail par molvenctl check").arg(faults));
    }
    const bool isWhole = std::all_of(outcome.tables.begin(), outcome.tables.end(),
                                     [](const migration::Moved& table) { return table.isWhole(); });
    return isWhole && faults == 0 ? 0 : 1;
}

} // namespace

Command migrateCommand() {
    return {QStringLiteral("migrer"),
            QStringLiteral("copie un dossier d'un dossier de fichiers à un serveur, ou retour"),
            QStringLiteral("SOURCE CIBLE"),
            [](Options& options) {
                options.addOptions({dossierOption(), jsonOption()});
            },
            run,
            2};
}

} // namespace molven::ctl

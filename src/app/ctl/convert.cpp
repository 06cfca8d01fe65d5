#include "app/ctl/command.h"

#include "dossier/check.h"
#include "dossier/conversion.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

namespace molven::ctl {

namespace {

const QString Societies = QStringLiteral("societe");

void sayTables(const conversion::Outcome& outcome) {
    for (const conversion::Converted& table : outcome.tables)
        for (const QString& line : table.words()) say(line);
    for (const QString& notice : outcome.notices) say(QStringLiteral("à savoir : ") + notice);
}

/// What the control finds, by kind: the first of each, how many there are, and what to do about them.
void sayFaults(const QList<check::Fault>& faults) {
    QMap<QString, QList<check::Fault>> kinds;
    for (const check::Fault& fault : faults) kinds[fault.kind->name].append(fault);
    for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
        const check::Fault& first = kind->first();
        say(QStringLiteral("contrôle, %1 : %2, dont %3 %4 : %5 ; à faire : %6")
                .arg(kind.key())
                .arg(kind->size())
                .arg(first.file, first.subject, first.text, first.kind->remedy));
    }
    say(faults.isEmpty() ? QStringLiteral("dossier sain")
                         : QStringLiteral("défauts : %1 ; le détail par molvenctl check").arg(faults.size()));
}

QJsonObject dataOf(const conversion::Outcome& outcome, const QList<check::Fault>& faults) {
    QJsonArray tables;
    for (const conversion::Converted& table : outcome.tables)
        tables.append(QJsonObject{{QStringLiteral("fichier"), table.file},
                                  {QStringLiteral("table"), table.table},
                                  {QStringLiteral("annonces"), table.announced},
                                  {QStringLiteral("lus"), table.read},
                                  {QStringLiteral("repris"), table.stored},
                                  {QStringLiteral("differences"), QJsonArray::fromStringList(table.differing)}});
    return {{QStringLiteral("dossier"), outcome.session.chemin_base},
            {QStringLiteral("tables"), tables},
            {QStringLiteral("avis"), QJsonArray::fromStringList(outcome.notices)},
            {QStringLiteral("defauts"), faultData(faults)}};
}

int convert(const QCommandLineParser& parser, const QStringList& arguments) {
    int told = -1;
    const auto outcome =
        conversion::convert(arguments[0], arguments[1], parser.isSet(Societies),
                            [&told](int done, int total) {
                                if (const int tenth = done * 10 / std::max(total, 1); tenth != told)
                                    complain(QStringLiteral("... %1 sur %2").arg(done).arg(total)), told = tenth;
                                return true;
                            },
                            {parser.value(QStringLiteral("code")), parser.value(QStringLiteral("nom"))});
    if (!wantsJson(parser)) sayTables(outcome);
    const QList<check::Fault> faults = check::run(outcome.session);
    wantsJson(parser) ? sayData(dataOf(outcome, faults)) : sayFaults(faults);
    const bool isWhole = std::all_of(outcome.tables.begin(), outcome.tables.end(),
                                     [](const conversion::Converted& table) { return table.isWhole(); });
    return isWhole && faults.isEmpty() ? 0 : 1;
}

} // namespace

Command convertCommand() {
    return {QStringLiteral("convertir"),
            QStringLiteral("fait un dossier d'un dossier de bases Jet, qui n'est que lu"),
            QStringLiteral("SOURCE CIBLE"),
            [](Options& options) {
                options.addOptions({{Societies, QStringLiteral("l'ajoute aux dossiers de l'installation CIBLE")},
                                    {QStringLiteral("code"), QStringLiteral("code société, s'il n'est pas lisible"),
                                     QStringLiteral("CE")},
                                    {QStringLiteral("nom"), QStringLiteral("son nom"), QStringLiteral("nom")},
                                    jsonOption()});
            },
            convert,
            2};
}

} // namespace molven::ctl

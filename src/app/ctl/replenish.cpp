#include "app/ctl/command.h"

#include "data/format.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "sales/replenishment.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

void declare(Options& options) {
    options.addOption(dossierOption());
    options.addOptions(
        {{QStringLiteral("depot"), QStringLiteral("un dépôt seulement"), QStringLiteral("CODE")}, jsonOption()});
}

void sayJson(const QList<Record>& rows) {
    QJsonArray array;
    for (const Record& row : rows) {
        QJsonObject object;
        for (const Field* field : strreassort.fields()) {
            const QString value = row.value(*field);
            object.insert(field->name,
                          field->kind == Field::Kind::Number ? QJsonValue(value.toInt()) : QJsonValue(value));
        }
        array.append(object);
    }
    sayData(array);
}

void sayLines(const QList<Record>& rows) {
    Decimal given, bought;
    for (const Record& row : rows) {
        say(QStringLiteral("%1 %2 : manque %3, à transférer %4, à acheter %5")
                .arg(row[strreassort.rea_dep], row[strreassort.rea_ref], shown(row[strreassort.rea_man]),
                     shown(row[strreassort.rea_don]), shown(row[strreassort.rea_ach])));
        given += row[strreassort.rea_don];
        bought += row[strreassort.rea_ach];
    }
    say(QStringLiteral("à transférer : %1, à acheter : %2").arg(shown(given), shown(bought)));
}

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    Workspace workspace;
    Database molven = workspace.open(sessionOf(parser, arguments[0]).molven());
    const QString depot = codes::completed(molven, codes::Depot, parser.value(QStringLiteral("depot")));
    if (!depot.isEmpty() && !parameters::find(molven, list::Depot, depot))
        throw Refusal(QStringLiteral("Ce dépôt n'existe pas"));
    const QList<Record> rows = replenishment::shortages(molven, depot);
    if (wantsJson(parser))
        sayJson(rows);
    else
        sayLines(rows);
    return 0;
}

} // namespace

Command replenishCommand() {
    return {QStringLiteral("reassort"),
            QStringLiteral("ce qui manque aux dépôts selon leurs dotations"),
            QStringLiteral("DIR"),
            declare,
            run,
            1};
}

} // namespace molven::ctl

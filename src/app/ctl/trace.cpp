#include "app/ctl/command.h"

#include "sales/unit_history.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

QJsonObject object(const Record& record) {
    QJsonObject values;
    for (const Field* field : record.table().fields())
        if (const QString value = record.value(*field); !value.isEmpty()) values.insert(field->name, value);
    return values;
}

QJsonObject object(const UnitTrail& trail) {
    const auto array = [](const QList<Record>& records) {
        QJsonArray values;
        for (const Record& record : records) values.append(object(record));
        return values;
    };
    return {{QStringLiteral("produit"), array(trail.unit)},
            {QStringLiteral("transferts"), array(trail.transfers)},
            {QStringLiteral("livraisons"), array(trail.deliveries)},
            {QStringLiteral("factures"), array(trail.invoices)},
            {QStringLiteral("consignations"), array(trail.consignments)}};
}

int trace(const QCommandLineParser& parser, const QStringList& arguments) {
    const UnitHistory history = unit_history::find(sessionOf(parser, arguments[0]), arguments[1]);
    if (!wantsJson(parser)) {
        for (const QString& line : unit_history::lines(history)) say(line);
        return 0;
    }
    const QJsonObject result{{QStringLiteral("immatriculation"), history.immatriculation},
                             {QStringLiteral("libelle"), history.label},
                             {QStringLiteral("en_cours"), object(history.current)},
                             {QStringLiteral("archive"), object(history.archived)}};
    sayData(result);
    return 0;
}

} // namespace

Command traceCommand() {
    return {QStringLiteral("trace"),
            QStringLiteral("raconte l'histoire d'une unité"),
            QStringLiteral("DIR IMMAT"),
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption(jsonOption());
            },
            trace,
            2};
}

} // namespace molven::ctl

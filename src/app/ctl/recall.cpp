#include "app/ctl/command.h"

#include "data/csv.h"
#include "sales/recall.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

void declare(Options& options) {
    options.addOption(dossierOption());
    options.addOptions(
        {{QStringLiteral("lot"), QStringLiteral("numéro de lot"), QStringLiteral("LOT")},
         {QStringLiteral("ref-fournisseur"), QStringLiteral("référence du fournisseur"), QStringLiteral("REF")},
         {QStringLiteral("article"), QStringLiteral("référence de l'article"), QStringLiteral("REF")},
         {QStringLiteral("du"), QStringLiteral("reçu depuis le JJ/MM/AAAA"), QStringLiteral("DATE")},
         {QStringLiteral("au"), QStringLiteral("reçu jusqu'au JJ/MM/AAAA"), QStringLiteral("DATE")},
         jsonOption(),
         {QStringLiteral("csv"), QStringLiteral("résultat en CSV")}});
}

void sayJson(const QList<Record>& units) {
    QJsonArray array;
    for (const Record& unit : units) {
        QJsonObject object;
        for (const Field* field : strrappel.fields()) object.insert(field->name, unit.value(*field));
        array.append(object);
    }
    sayData(array);
}

void sayCsv(const QList<Record>& units) {
    say(csv::line(strrappel.columns().split(u',')).trimmed());
    for (const Record& unit : units) {
        QStringList cells;
        for (const Field* field : strrappel.fields()) cells.append(unit.value(*field));
        say(csv::line(cells).trimmed());
    }
}

void sayLines(const QList<Record>& units) {
    for (const Record& unit : units) {
        const QString patient = unit[strrappel.rap_pat];
        const QString laid =
            patient.isEmpty() ? QString() : QStringLiteral(", patient %1 le %2").arg(patient, unit[strrappel.rap_dat]);
        say(QStringLiteral("%1 : %2%3").arg(unit[strrappel.rap_imm], unit[strrappel.rap_lieu], laid));
    }
    say(QStringLiteral("produits concernés : %1").arg(units.size()));
}

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    const RecallQuery query{parser.value(QStringLiteral("lot")), parser.value(QStringLiteral("ref-fournisseur")),
                            parser.value(QStringLiteral("article")), parser.value(QStringLiteral("du")),
                            parser.value(QStringLiteral("au"))};
    const QList<Record> units = recall::find(sessionOf(parser, arguments[0]), query);
    if (wantsJson(parser))
        sayJson(units);
    else if (parser.isSet(QStringLiteral("csv")))
        sayCsv(units);
    else
        sayLines(units);
    return 0;
}

} // namespace

Command recallCommand() {
    return {QStringLiteral("rappel"),
            QStringLiteral("liste les unités d'un lot et où elles sont"),
            QStringLiteral("DIR"),
            declare,
            run,
            1};
}

} // namespace molven::ctl

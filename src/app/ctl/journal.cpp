#include "app/ctl/command.h"

#include "data/csv.h"
#include "data/errors.h"
#include "data/record.h"
#include "sales/record_trail.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

void declare(Options& options) {
    options.addOption(dossierOption());
    options.addOptions(
        {{QStringLiteral("immat"), QStringLiteral("d'une unité"), QStringLiteral("IMMAT")},
         {QStringLiteral("document"), QStringLiteral("d'un document, NUMERO ou ANNEE/NUMERO"), QStringLiteral("DOC")},
         {QStringLiteral("client"), QStringLiteral("d'un client"), QStringLiteral("CODE")},
         {QStringLiteral("article"), QStringLiteral("d'un article"), QStringLiteral("REF")},
         {QStringLiteral("du"), QStringLiteral("depuis le JJ/MM/AAAA"), QStringLiteral("DATE")},
         {QStringLiteral("au"), QStringLiteral("jusqu'au JJ/MM/AAAA"), QStringLiteral("DATE")},
         jsonOption(),
         {QStringLiteral("csv"), QStringLiteral("résultat en CSV")}});
}

TrailSubject subjectOf(const QCommandLineParser& parser) {
    using Kind = TrailSubject::Kind;
    QList<TrailSubject> asked;
    for (const auto& [option, kind] :
         {std::pair(QStringLiteral("immat"), Kind::Unit), std::pair(QStringLiteral("document"), Kind::Document),
          std::pair(QStringLiteral("client"), Kind::Client), std::pair(QStringLiteral("article"), Kind::Article)})
        if (parser.isSet(option)) asked.append({kind, parser.value(option)});
    if (asked.size() > 1) throw Refusal(QStringLiteral("Un seul de immat, document, client et article est attendu"));
    if (asked.isEmpty()) return {};
    if (asked.first().key.trimmed().isEmpty()) throw Refusal(QStringLiteral("La valeur cherchée est vide"));
    return asked.first();
}

QStringList cellsOf(const Record& row) {
    QStringList cells;
    for (const Field* field : strhisto.fields()) cells.append(row.value(*field));
    return cells;
}

void sayJson(const QList<Record>& rows) {
    QJsonArray array;
    for (const Record& row : rows) {
        QJsonObject object;
        for (const Field* field : strhisto.fields()) object.insert(field->name, row.value(*field));
        array.append(object);
    }
    sayData(array);
}

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    const QList<Record> rows =
        record_trail::find(sessionOf(parser, arguments[0]), subjectOf(parser), parser.value(QStringLiteral("du")),
                           parser.value(QStringLiteral("au")));
    if (wantsJson(parser)) {
        sayJson(rows);
        return 0;
    }
    const bool asCsv = parser.isSet(QStringLiteral("csv"));
    if (asCsv) say(csv::line(strhisto.columns().split(u',')).trimmed());
    for (const Record& row : rows) say(asCsv ? csv::line(cellsOf(row)).trimmed() : cellsOf(row).join(u' '));
    if (!asCsv) say(QStringLiteral("changements : %1").arg(rows.size()));
    return 0;
}

} // namespace

Command journalCommand() {
    return {QStringLiteral("journal"),
            QStringLiteral("dit qui a changé quoi et quand"),
            QStringLiteral("DIR"),
            declare,
            run,
            1};
}

} // namespace molven::ctl

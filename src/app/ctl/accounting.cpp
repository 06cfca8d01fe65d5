// Words about accounts and figures: statistics, commissions, the transfer to accounting.

#include "app/ctl/command.h"

#include "accounting/commissions.h"
#include "accounting/entry_files.h"
#include "accounting/sales_report.h"
#include "accounting/transfer.h"
#include "data/csv.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "data/safe_file.h"
#include "reference/seller.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

using Columns = QList<const Field*>;

void declarePeriod(Options& options) {
    options.addOption(dossierOption());
    options.addOptions({{QStringLiteral("du"), QStringLiteral("factures depuis le JJ/MM/AAAA"), QStringLiteral("DATE")},
                        {QStringLiteral("au"), QStringLiteral("factures jusqu'au JJ/MM/AAAA"), QStringLiteral("DATE")},
                        jsonOption(),
                        {QStringLiteral("csv"), QStringLiteral("résultat en CSV")}});
}

Period periodOf(const QCommandLineParser& parser) {
    return typedPeriod(parser.value(QStringLiteral("du")), parser.value(QStringLiteral("au")));
}

/// Numbers as numbers, what is empty as null.
QJsonValue jsonOf(const Record& row, const Field& field) {
    const QString value = row.value(field);
    if (field.kind != Field::Kind::Number) return value;
    return value.isEmpty() ? QJsonValue() : QJsonValue(value.toDouble());
}

void sayRows(const QCommandLineParser& parser, const QList<Record>& rows, const Columns& columns) {
    if (wantsJson(parser)) {
        QJsonArray array;
        for (const Record& row : rows) {
            QJsonObject object;
            for (const Field* field : columns) object.insert(field->name, jsonOf(row, *field));
            array.append(object);
        }
        return sayData(array);
    }
    const bool isCsv = parser.isSet(QStringLiteral("csv"));
    QStringList names;
    for (const Field* field : columns) names.append(field->name);
    if (isCsv) say(csv::line(names).trimmed());
    for (const Record& row : rows) {
        QStringList cells;
        for (const Field* field : columns)
            cells.append(row.value(*field).replace(u'.', field->kind == Field::Kind::Number ? u',' : u'.'));
        say(isCsv ? csv::line(cells).trimmed() : cells.join(QStringLiteral("  ")));
    }
}

Columns everyColumn(const Table& table) { return {table.fields().begin(), table.fields().end()}; }

Columns columnsOf(const statistics::SalesReport& report) {
    const auto& s = strstat;
    Columns columns;
    for (const statistics::Key& key : report.kind().keys) columns.append(&(s.*key.code));
    columns +=
        Columns{&s.sta_lib, &s.sta_qte, &s.sta_brut, &s.sta_net, &s.sta_achat, &s.sta_marge, &s.sta_pourc, &s.sta_part};
    if (report.query().compared) columns += Columns{&s.sta_net2, &s.sta_evol};
    return columns;
}

int runStatistics(const QCommandLineParser& parser, const QStringList& arguments) {
    const statistics::ReportKind& kind = statistics::report(arguments[1]);
    if (kind.number != arguments[1]) {
        QStringList known;
        for (const statistics::ReportKind& one : statistics::reports())
            known.append(one.number + QStringLiteral(" = ") + one.title);
        throw Refusal(
            QStringLiteral("Rapport inconnu : %1. Rapports : %2").arg(arguments[1], known.join(QStringLiteral(", "))));
    }
    Workspace workspace;
    const auto files = sales_statistics::openFiles(workspace, sessionOf(parser, arguments[0]));
    statistics::Query query;
    query.period = periodOf(parser);
    if (const QString from = parser.value(QStringLiteral("compare-du")); !from.isEmpty())
        query.compared = typedPeriod(from, parser.value(QStringLiteral("compare-au")));
    statistics::prepare(files, query);
    const statistics::SalesReport report(files, kind, query);
    sayRows(parser, report.rows(statistics::Sorting::ByKey), columnsOf(report));
    return 0;
}

int runCommissions(const QCommandLineParser& parser, const QStringList& arguments) {
    Workspace workspace;
    const auto files = sales_statistics::openFiles(workspace, sessionOf(parser, arguments[0]));
    sales_statistics::regenerate(files, statd, periodOf(parser));
    const auto statements = commissions::statements(files.tri, files.molven, {}, {});
    sayRows(parser, commissions::rows(statements), everyColumn(strcommission));
    return 0;
}

/// The entries as they were controlled, or as the transfer of that number wrote them.
void sayEntries(const QCommandLineParser& parser, const transfer::Files& files, const QString& number) {
    const auto& e = strecrit;
    Database written = number.isEmpty() ? files.lines.tri : files.lines.compta;
    QList<Record> rows;
    for (const Record& row : written.select(e, e.ecr_trf == number, {e.ecr_num, e.ecr_lg})) rows.append(row);
    sayRows(parser, rows, everyColumn(e));
}

void sayControl(const QCommandLineParser& parser, const transfer::Files& files, const transfer::Control& control,
                const QString& number) {
    if (wantsJson(parser)) {
        QJsonArray left;
        for (const transfer::LeftOut& one : control.leftOut)
            left.append(QJsonObject{{QStringLiteral("annee"), one.year},
                                    {QStringLiteral("numero"), one.number},
                                    {QStringLiteral("client"), one.client},
                                    {QStringLiteral("motif"), one.reason}});
        const QJsonObject object{{QStringLiteral("documents"), control.documents},
                                 {QStringLiteral("ecritures"), control.entries},
                                 {QStringLiteral("debit"), control.debit.toString().toDouble()},
                                 {QStringLiteral("credit"), control.credit.toString().toDouble()},
                                 {QStringLiteral("transfert"), number},
                                 {QStringLiteral("laisses"), left}};
        return sayData(object);
    }
    const bool isCsv = parser.isSet(QStringLiteral("csv"));
    for (const transfer::LeftOut& one : control.leftOut)
        (isCsv ? complain
               : say)(QStringLiteral("laissé : %1/%2 %3 : %4").arg(one.year, one.number, one.client, one.reason));
    if (isCsv) return sayEntries(parser, files, number);
    say(QStringLiteral("%1, %2 d'écriture, débit %3, crédit %4%5")
            .arg(counted(control.documents, QStringLiteral("document")),
                 counted(control.entries, QStringLiteral("ligne")), amountText(control.debit),
                 amountText(control.credit),
                 number.isEmpty() ? QStringLiteral(" ; rien n'est écrit, --valider transfère")
                                  : QStringLiteral(" : transfert ") + number));
}

int runTransfer(const QCommandLineParser& parser, const QStringList& arguments) {
    const Session session = sessionOf(parser, arguments[0]);
    Workspace workspace;
    const auto files = transfer::openFiles(workspace, session);
    if (parser.isSet(QStringLiteral("fec"))) {
        const Period year = periodOf(parser);
        if (Database compta = files.lines.compta; compta.count(strecrit, year.covers(strecrit.tri_dat)) == 0)
            throw Refusal(QStringLiteral("Aucune écriture dans cette période"));
        const QString name = entry_files::legalName(seller::siren(seller::read(files.lines.molven)), year);
        writeWhole(session.chemin_tri + name, entry_files::legalFile(files.lines.compta, files.lines.molven, year));
        say(session.chemin_tri + name);
        return 0;
    }
    const transfer::Control control = transfer::control(files, parser.value(QStringLiteral("au")));
    QString number;
    if (parser.isSet(QStringLiteral("valider")) && control.documents > 0) {
        number = transfer::run(files, control);
        entry_files::writeTransfer(files.lines.compta, number, session.chemin_tri);
    }
    sayControl(parser, files, control, number);
    return control.leftOut.isEmpty() ? 0 : 1;
}

} // namespace

Command statisticsCommand() {
    return {QStringLiteral("stats"),
            QStringLiteral("chiffre d'affaires d'une période par client, article, mois..."),
            QStringLiteral("DIR RAPPORT"),
            [](Options& options) {
                declarePeriod(options);
                options.addOptions(
                    {{QStringLiteral("compare-du"), QStringLiteral("période comparée, du JJ/MM/AAAA"),
                      QStringLiteral("DATE")},
                     {QStringLiteral("compare-au"), QStringLiteral("au JJ/MM/AAAA"), QStringLiteral("DATE")}});
            },
            runStatistics,
            2};
}

Command commissionsCommand() {
    return {QStringLiteral("commissions"),
            QStringLiteral("commissions des représentants sur les factures d'une période"),
            QStringLiteral("DIR"),
            declarePeriod,
            runCommissions,
            1};
}

Command transferCommand() {
    return {QStringLiteral("transfert-compta"),
            QStringLiteral("écritures des factures en comptabilité : contrôle, transfert, fichier légal"),
            QStringLiteral("DIR"),
            [](Options& options) {
                declarePeriod(options);
                options.addOptions({{QStringLiteral("valider"), QStringLiteral("écrit le transfert et ses fichiers")},
                                    {QStringLiteral("fec"),
                                     QStringLiteral("écrit le fichier des écritures de l'exercice --du --au")}});
            },
            runTransfer,
            1};
}

} // namespace molven::ctl

#include "app/ctl/command.h"

#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "sales/archiving.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace molven::ctl {

namespace {

const QString Before = QStringLiteral("avant");

void sayMoved(const QList<archiving::Moved>& all) {
    for (const archiving::Moved& moved : all) {
        say(QStringLiteral("%1 : %2").arg(moved.family).arg(moved.outcome.moved));
        for (const QString& key : moved.outcome.doubles) say(QStringLiteral("en double, laissé : ") + key);
    }
}

QJsonArray movedData(const QList<archiving::Moved>& all) {
    QJsonArray array;
    for (const archiving::Moved& moved : all)
        array.append(QJsonObject{{QStringLiteral("famille"), moved.family},
                                 {QStringLiteral("deplaces"), moved.outcome.moved},
                                 {QStringLiteral("doubles"), QJsonArray::fromStringList(moved.outcome.doubles)}});
    return array;
}

int move(const QCommandLineParser& parser, const QString& folder, archive::Direction direction) {
    const QDate day = dateFromText(parser.value(Before));
    require(day.isValid(), QStringLiteral("Indiquez --avant JJ/MM/AAAA"), QString());
    const Session session = sessionOf(parser, folder);
    const QList<archiving::Moved> all = archiving::moveBefore(session, direction, day, {});
    wantsJson(parser) ? sayData(movedData(all)) : sayMoved(all);
    const bool areAll = std::all_of(all.begin(), all.end(),
                                    [](const archiving::Moved& moved) { return moved.outcome.doubles.isEmpty(); });
    return areAll ? 0 : 1;
}

void declare(Options& options) {
    options.addOption(dossierOption());
    options.addOption({Before, QStringLiteral("documents et ventes d'avant le JJ/MM/AAAA"), QStringLiteral("DATE")});
    options.addOption(jsonOption());
}

} // namespace

Command archiveCommand() {
    return {QStringLiteral("archive"),
            QStringLiteral("met dans l'historique les documents et les produits vendus d'avant une date"),
            QStringLiteral("DIR"),
            declare,
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                return move(parser, arguments[0], archive::Direction::ToHistory);
            },
            1};
}

Command reactivateCommand() {
    return {QStringLiteral("reactive"),
            QStringLiteral("reprend de l'historique les documents et les produits d'avant une date"),
            QStringLiteral("DIR"),
            declare,
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                return move(parser, arguments[0], archive::Direction::FromHistory);
            },
            1};
}

} // namespace molven::ctl

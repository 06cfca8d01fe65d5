#include "app/ctl/command.h"

#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "sales/archiving.h"

#include <QCommandLineParser>

namespace molven::ctl {

namespace {

const QString Before = QStringLiteral("avant");

int move(const QCommandLineParser& parser, const QString& folder, archive::Direction direction) {
    const QDate day = dateFromText(parser.value(Before));
    require(day.isValid(), QStringLiteral("Indiquez --avant JJ/MM/AAAA"), QString());
    const Session session = sessionOf(parser, folder);
    bool areAll = true;
    for (const archiving::Moved& moved : archiving::moveBefore(session, direction, day, {})) {
        say(QStringLiteral("%1 : %2").arg(moved.family).arg(moved.outcome.moved));
        for (const QString& key : moved.outcome.doubles) say(QStringLiteral("en double, laissé : ") + key);
        areAll = areAll && moved.outcome.doubles.isEmpty();
    }
    return areAll ? 0 : 1;
}

void declare(Options& options) {
    options.addOption(dossierOption());
    options.addOption({Before, QStringLiteral("documents et ventes d'avant le JJ/MM/AAAA"), QStringLiteral("DATE")});
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

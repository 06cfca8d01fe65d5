#include "app/ctl/command.h"

#include "data/clock.h"
#include "data/database.h"
#include "data/dates.h"
#include "data/errors.h"
#include "dossier/creation.h"
#include "dossier/demo.h"
#include "sales/document_tables.h"
#include "stock/unit_tables.h"

#include <QCommandLineParser>

namespace molven::ctl {

namespace {

int number(const QCommandLineParser& parser, const QString& option) {
    bool valid = false;
    const int value = parser.value(option).toInt(&valid);
    if (!valid || value < 1) throw Refusal(QStringLiteral("--%1 attend un nombre positif").arg(option));
    return value;
}

void report(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    say(QStringLiteral("unités : %1").arg(molven.count(strproduit)));
    say(QStringLiteral("bons de livraison : %1").arg(vente.count(strlive)));
    say(QStringLiteral("bons de consignation : %1").arg(vente.count(strcsge)));
    say(QStringLiteral("factures et avoirs : %1").arg(vente.count(strface)));
    say(QStringLiteral("bons de transfert : %1").arg(vente.count(strbtre)));
}

} // namespace

Command demoCommand() {
    return {
        QStringLiteral("demo"),
        QStringLiteral("crée une installation remplie d'un distributeur plausible"),
        QStringLiteral("DIR"),
        [](Options& options) {
            options.addOptions(
                {{QStringLiteral("code"), QStringLiteral("code société"), QStringLiteral("CE"), QStringLiteral("CE")},
                 {QStringLiteral("unites"), QStringLiteral("nombre d'unités reçues"), QStringLiteral("N"),
                  QStringLiteral("5000")},
                 {QStringLiteral("jour"), QStringLiteral("comme faite ce jour-là"), QStringLiteral("JJ/MM/AAAA")},
                 {QStringLiteral("graine"), QStringLiteral("graine du tirage"), QStringLiteral("N"),
                  QStringLiteral("1")},
                 serverOption()});
        },
        [](const QCommandLineParser& parser, const QStringList& arguments) {
            const demo::Options options{number(parser, QStringLiteral("unites")),
                                        static_cast<unsigned>(number(parser, QStringLiteral("graine"))),
                                        parser.value(QStringLiteral("serveur"))};
            if (const QString day = parser.value(QStringLiteral("jour")); !day.isEmpty()) {
                if (!dateFromText(day).isValid()) throw Refusal(QStringLiteral("date invalide : ") + day);
                Clock::set(dateFromText(day));
            }
            const Session session =
                demo::create(creation::placeOf(arguments[0]), parser.value(QStringLiteral("code")), options);
            say(QStringLiteral("installation créée : ") + session.dossier_app);
            report(session);
            return 0;
        },
        1};
}

} // namespace molven::ctl

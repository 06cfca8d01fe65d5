#include "app/ctl/command.h"

#include "data/errors.h"
#include "data/format.h"
#include "sales/stock_rebuild.h"
#include "stock/stock_recount.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

bool goOn(int, int) { return true; }

void sayJson(const QJsonObject& object) { sayData(object); }

void sayResult(bool isJson, const QString& what, qint64 articles, qint64 changed, const QStringList& absent = {}) {
    if (isJson)
        return sayJson({{QStringLiteral("articles"), articles},
                        {QStringLiteral("corriges"), changed},
                        {QStringLiteral("dossiers_absents"), QJsonArray::fromStringList(absent)}});
    say(QStringLiteral("%1 : %2, %3 de stock changé")
            .arg(what, counted(articles, QStringLiteral("article")))
            .arg(changed));
    if (!absent.isEmpty()) say(QStringLiteral("dossiers absents : ") + absent.join(QStringLiteral(", ")));
}

int rebuild(const Session& session, const QString& from, const QString& to, bool isJson) {
    const auto done = stock_rebuild::run(
        session, from, to, [](const QString&) {}, goOn);
    sayResult(isJson, QStringLiteral("articles non suivis"), done->articles, done->changed, done->absentFolders);
    return 0;
}

int recount(const Session& session, bool withAverages, bool isJson) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    const auto done = withAverages ? stock_recount::countAndAverage(molven, session.rules(), goOn)
                                   : stock_recount::count(molven, goOn);
    sayResult(isJson, QStringLiteral("articles suivis"), done->articles, done->changed);
    return 0;
}

void declare(Options& options) {
    options.addOption(dossierOption());
    options.addOptions(
        {{QStringLiteral("pamp"), QStringLiteral("recalcule aussi le prix moyen d'achat des articles suivis")},
         {QStringLiteral("du"), QStringLiteral("articles non suivis : depuis le JJ/MM/AAAA"), QStringLiteral("DATE")},
         {QStringLiteral("au"), QStringLiteral("articles non suivis : jusqu'au JJ/MM/AAAA"), QStringLiteral("DATE")},
         jsonOption()});
}

int run(const QCommandLineParser& parser, const QStringList& arguments) {
    const Session session = sessionOf(parser, arguments[0]);
    const QString from = parser.value(QStringLiteral("du")), to = parser.value(QStringLiteral("au"));
    const bool isJson = wantsJson(parser), withAverages = parser.isSet(QStringLiteral("pamp"));
    if (from.isEmpty() && to.isEmpty()) return recount(session, withAverages, isJson);
    if (withAverages) throw Refusal(QStringLiteral("pamp ne vaut que pour les articles suivis"));
    return rebuild(session, from, to, isJson);
}

} // namespace

Command recountCommand() {
    return {QStringLiteral("recalcul"),
            QStringLiteral("recompte le stock des articles suivis, ou refait celui des autres sur une période"),
            QStringLiteral("DIR"),
            declare,
            run,
            1};
}

} // namespace molven::ctl

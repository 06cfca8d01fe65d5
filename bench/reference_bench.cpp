#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "data/database.h"
#include "reference/article_updates.h"
#include "reference/articles.h"
#include "reference/code_kinds.h"
#include "reference/codes.h"

#include <sqlite3.h>

namespace molven::bench {

namespace {

const QString Articles = QStringLiteral("A012");

/// What typing the beginning of a reference asks for: the articles, in order, and the first page of them.
void lookUpByRule(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    for (auto _ : state) {
        const Recordset found = molven.select(strarticle, startsWith(strarticle.art_ref, Articles), strarticle.art_ref);
        for (const Record& article : found) benchmark::DoNotOptimize(&article);
    }
}

void lookUpBare(benchmark::State& state) {
    BareEngine engine({session().molven()});
    const auto records =
        engine.prepare(QStringLiteral("select * from strarticle where art_ref >= ? and art_ref < ? order by art_ref"));
    const QByteArray first = Articles.toUtf8(), end = (Articles + QChar(0xFFFF)).toUtf8();
    for (auto _ : state) benchmark::DoNotOptimize(BareEngine::run(records, {first, end}));
}

/// What is offered below a code box: by the beginning of a code, by a part of a label, and where nothing fits.
void offerByRule(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    const QStringList typed{QStringLiteral("A0"), QStringLiteral("taille 7"), QStringLiteral("zzzz")};
    for (auto _ : state)
        for (const QString& text : typed) benchmark::DoNotOptimize(codes::offers(molven, codes::Article, text, 8));
}

void pushByRule(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    int price = 100;
    for (auto _ : state) article_updates::pushPrice(molven, article_updates::lpp(), PushedLpp, Decimal(++price));
}

/// The same as one statement over all articles of the code.
void pushBare(benchmark::State& state) {
    BareEngine engine({session().molven()});
    const auto update = engine.prepare(
        QStringLiteral("update strarticle set art_pv1=(select round(?/(1+par1_tx/100.0),2) from strparfac where "
                       "par1_cde=art_tva), art_ttc=?, art_res=? where art_lpp=?"));
    int price = 100;
    for (auto _ : state) {
        const QByteArray ttc = QByteArray::number(++price);
        engine.execute("begin immediate");
        BareEngine::run(update, {ttc, ttc, ttc + ".00", PushedLpp.toUtf8()});
        engine.execute("commit");
    }
}

} // namespace

void registerReference() {
    add("article_prefix_of_50000/molven", lookUpByRule, 50);
    add("article_prefix_of_50000/bare", lookUpBare, 50);
    add("three_offers_of_50000/molven", offerByRule, 10);
    add("price_push_of_20000/molven", pushByRule, 3);
    addUnjournalled("price_push_of_20000", pushByRule, 3);
    add("price_push_of_20000/bare", pushBare, 3);
}

} // namespace molven::bench

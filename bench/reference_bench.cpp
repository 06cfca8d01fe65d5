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
    const auto keys = engine.prepare(
        QStringLiteral("select rowid from strarticle where art_ref >= ? and art_ref < ? order by art_ref"));
    const auto record = engine.prepare(QStringLiteral("select * from strarticle where rowid = ?"));
    const QByteArray first = Articles.toUtf8(), end = (Articles + QChar(0xFFFF)).toUtf8();
    for (auto _ : state) {
        std::vector<sqlite3_int64> found;
        sqlite3_reset(keys.get());
        sqlite3_bind_text(keys.get(), 1, first.constData(), static_cast<int>(first.size()), SQLITE_STATIC);
        sqlite3_bind_text(keys.get(), 2, end.constData(), static_cast<int>(end.size()), SQLITE_STATIC);
        while (sqlite3_step(keys.get()) == SQLITE_ROW) found.push_back(sqlite3_column_int64(keys.get(), 0));
        for (const sqlite3_int64 key : found) BareEngine::run(record, {QByteArray::number(key)});
    }
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

/// The same as one reads and writes it article by article, in one transaction.
void pushBare(benchmark::State& state) {
    BareEngine engine({session().molven()});
    const auto select = engine.prepare(QStringLiteral("select rowid, art_tva from strarticle where art_lpp = ?"));
    const auto vat = engine.prepare(QStringLiteral("select par1_tx from strparfac where par1_cde = ?"));
    const auto update =
        engine.prepare(QStringLiteral("update strarticle set art_pv1=?, art_ttc=?, art_res=? where rowid=?"));
    const QByteArray code = PushedLpp.toUtf8();
    int price = 100;
    for (auto _ : state) {
        engine.execute("begin immediate");
        const QByteArray ttc = QByteArray::number(++price);
        std::vector<sqlite3_int64> keys;
        sqlite3_reset(select.get());
        sqlite3_bind_text(select.get(), 1, code.constData(), static_cast<int>(code.size()), SQLITE_STATIC);
        while (sqlite3_step(select.get()) == SQLITE_ROW) keys.push_back(sqlite3_column_int64(select.get(), 0));
        for (const sqlite3_int64 key : keys) {
            BareEngine::run(vat, {"1"});
            BareEngine::run(update,
                            {QByteArray::number(price / 1.055, 'f', 2), ttc, ttc + ".00", QByteArray::number(key)});
        }
        sqlite3_reset(select.get());
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

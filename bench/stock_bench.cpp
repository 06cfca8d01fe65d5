#include "bare_engine.h"
#include "bench.h"

#include "reference/article_tables.h"
#include "stock/stock_recount.h"
#include "stock/unit_tables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace molven::bench {

namespace {

/// A copy of the dossier's main file whose units are of 50,000 articles, all followed; made once a run.
QString spreadFile() {
    const QString folder = session().chemin_base + QStringLiteral("recomptage/");
    const QString path = folder + QStringLiteral("molven.mdb");
    if (QFileInfo::exists(path)) return path;
    QDir().mkpath(folder);
    QFile::copy(session().molven(), path);
    BareEngine engine(QStringList{path});
    engine.execute("update strproduit set ref_art = 'A' || printf('%05d', rowid % 50000)");
    engine.execute("update strarticle set art_aig = 'O' where art_ref glob 'A[0-9]*'");
    return path;
}

/// So many articles hold a wrong stock.
void spoil(const QString& path, int articles) {
    BareEngine engine(QStringList{path});
    engine.execute("begin");
    engine.execute("update strarticle set art_stk = (select count(*) from strproduit where ref_art = art_ref and "
                   "tes_vte <> 'O') where art_aig = 'O'");
    engine.execute(QStringLiteral("update strarticle set art_stk = -1 where art_aig = 'O' and rowid in (select rowid "
                                  "from strarticle where art_aig = 'O' limit %1)")
                       .arg(articles)
                       .toUtf8()
                       .constData());
    engine.execute("commit");
}

void recountByRule(benchmark::State& state, int spoilt) {
    const QString path = spreadFile();
    Workspace workspace;
    Database molven = workspace.open(path);
    for (auto _ : state) {
        state.PauseTiming();
        spoil(path, spoilt);
        state.ResumeTiming();
        stock_recount::count(molven, [](int, int) { return true; });
    }
}

void recountBare(benchmark::State& state, int spoilt) {
    const QString path = spreadFile();
    BareEngine engine({path});
    for (auto _ : state) {
        state.PauseTiming();
        spoil(path, spoilt);
        state.ResumeTiming();
        // Counting once and writing what differs is faster than a count for each article.
        engine.execute("begin immediate");
        engine.execute("create temp table counted as select ref_art, count(*) n from strproduit where tes_vte <> 'O' "
                       "group by ref_art");
        engine.execute("create index temp.by_ref on counted (ref_art)");
        engine.execute("update strarticle set art_stk = coalesce((select n from counted where ref_art = art_ref), 0) "
                       "where art_aig = 'O' and art_stk is not coalesce((select n from counted where ref_art = "
                       "art_ref), 0)");
        engine.execute("drop table counted");
        engine.execute("commit");
    }
}

} // namespace

void registerStock() {
    for (const int spoilt : {100, 50'000}) {
        const std::string deed = "recount_" + std::to_string(spoilt) + "_wrong";
        add(
            deed + "/molven", [spoilt](benchmark::State& state) { recountByRule(state, spoilt); }, 1);
        add(
            deed + "/bare", [spoilt](benchmark::State& state) { recountBare(state, spoilt); }, 1);
    }
}

} // namespace molven::bench

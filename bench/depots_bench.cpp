#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "reference/articles.h"
#include "sales/replenishment.h"
#include "stock/depot_counts.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace molven::bench {

namespace {

constexpr int Counted = 2000, ReadingsARun = 400; // five repetitions read them all
const QString CountedDepot = QStringLiteral("900"), CountedLot = QStringLiteral("LOTC");

/// 200 depots with endowments of 300 articles, of which they and the main depot hold some, and a depot of 2,000 units
/// to be counted, 500 of them of one lot.
void prepare() {
    static bool done = false;
    if (std::exchange(done, true)) return;
    BareEngine engine({session().molven()});
    engine.execute("begin immediate");
    engine.execute("update strproduit set ref_art=printf('A%05d',rowid/5%300), tes_vte='N', num_vte='', reg_pat='', "
                   "dat_per='12/2045', "
                   "num_dep=case rowid%5 when 0 then printf('%03d',200+rowid/1500%200) else '001' end "
                   "where rowid%5 in (0,1)");
    engine.execute("update strproduit set num_dep='900', tes_vte='N', ref_art='A00000', fou_imm='', "
                   "lot_art=case when rowid%4=0 then 'LOTC' else lot_art end where rowid in "
                   "(select rowid from strproduit where rowid%5=2 limit 2000)");
    engine.execute("update strarticle set art_rfou='F-A0' where art_ref='A00000'");
    engine.execute("with recursive d(n) as (select 200 union all select n+1 from d where n<399), "
                   "a(m) as (select 0 union all select m+1 from a where m<299) insert into strdotation "
                   "select printf('%03d',n),printf('A%05d',m),'IMPLANT',5 from d,a");
    engine.execute("commit");
    // The day's first write seals the journal of the former one, whatever it is.
    Workspace workspace;
    Transaction transaction(workspace.open(session().molven()).workspace());
    workspace.open(session().molven())
        .update(strarticle, {{strarticle.art_rfou, QStringLiteral("F-A1")}},
                strarticle.art_ref == QStringLiteral("A00001"));
    transaction.commit();
}

QStringList countedUnits() {
    Workspace workspace;
    QStringList units;
    for (const QStringList& unit : workspace.open(session().molven())
                                       .values(strproduit, {&strproduit.imm_art}, strproduit.num_dep == CountedDepot))
        units.append(unit.first());
    return units;
}

/// The median of a run's readings and the slowest: a user waits for each of them.
class Readings {
public:
    explicit Readings(const char* whose) : whose_(whose) {}
    ~Readings() {
        std::sort(times_.begin(), times_.end());
        if (!times_.empty())
            std::printf("%zu readings, %s: median %.2f ms, slowest %.2f ms\n", times_.size(), whose_,
                        times_[times_.size() / 2], times_.back());
    }
    template <class Read>
    void time(const Read& read) {
        QElapsedTimer timer;
        timer.start();
        read();
        times_.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }

private:
    const char* whose_;
    std::vector<double> times_;
};

/// Readings one after the other into one count, each with the figures that the screen then shows.
void readByRule(benchmark::State& state, const std::function<QString(int)>& scanned) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    Record header(strinvdep);
    header[strinvdep.inv_dep] = CountedDepot;
    header[strinvdep.inv_eta] = count_state::Open;
    DepotCount count(molven, depot_counts::openOf(molven, CountedDepot).value_or(header));
    int next = static_cast<int>(count.readings().size());
    Readings readings(next == 0 ? "of a new count" : "of a count begun");
    for (auto _ : state) {
        const QString code = scanned(next++ % Counted);
        readings.time([&] {
            count.read(code);
            benchmark::DoNotOptimize(count.tally());
            benchmark::DoNotOptimize(count.readings());
        });
    }
}

void readBare(benchmark::State& state) {
    prepare();
    const QStringList units = countedUnits();
    BareEngine engine({session().molven()});
    const auto unit = engine.prepare(QStringLiteral("select * from strproduit where pro_ann='20' and imm_art=?"));
    const auto known = engine.prepare(QStringLiteral("select * from strinvlig where lig_no=? and lig_imm=?"));
    const auto insert = engine.prepare(insertion(strinvlig, QStringLiteral("main")));
    int next = 0;
    Readings readings("bare");
    for (auto _ : state) {
        const QByteArray number = units[next++].toUtf8();
        std::vector<QByteArray> values(static_cast<std::size_t>(strinvlig.fields().size()), QByteArray(""));
        values[static_cast<std::size_t>(strinvlig.lig_no.position)] = "999999";
        values[static_cast<std::size_t>(strinvlig.lig_imm.position)] = number;
        readings.time([&] {
            engine.execute("begin immediate");
            BareEngine::run(unit, {number});
            BareEngine::run(known, {"999999", number});
            BareEngine::run(insert, values);
            engine.execute("commit");
        });
    }
    engine.execute("delete from strinvlig where lig_no='999999'");
}

void shortagesByRule(benchmark::State& state) {
    prepare();
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    for (auto _ : state) benchmark::DoNotOptimize(replenishment::shortages(molven).size());
}

/// The same rows, as one statement.
void shortagesBare(benchmark::State& state) {
    prepare();
    BareEngine engine({session().molven()});
    const auto shortages = engine.prepare(QStringLiteral(
        "with held as (select num_dep, ref_art, count(*) units from strproduit where tes_vte='N' and "
        "num_dep not in ('001','XXX') group by num_dep, ref_art), "
        "given as (select ref_art, count(*) units from strproduit where num_dep='001' and tes_vte='N' and fab_con<>'Z' "
        "and (dat_per='' or substr(dat_per,4,4)||substr(dat_per,1,2)>='204001') group by ref_art), "
        "lacking as (select dot_dep, dot_ref, dot_lib, dot_qte, coalesce(units,0) holds, dot_qte-coalesce(units,0) "
        "lacks from strdotation left join held on num_dep=dot_dep and ref_art=dot_ref where "
        "dot_qte>coalesce(units,0)), "
        "shared as (select lacking.*, coalesce(units,0)-coalesce(sum(lacks) over (partition by dot_ref order by "
        "dot_dep rows between unbounded preceding and 1 preceding),0) remains from lacking left join given on "
        "ref_art=dot_ref), "
        "names as (select num_par, min(lib_par) name from strparam where cod_par='D' group by num_par), "
        "clients as (select clt_dep, min(clt_cod) client from strclient where clt_dep<>'' group by clt_dep) "
        "select dot_dep, name, client, dot_ref, dot_lib, dot_qte, holds, lacks, max(0,min(lacks,remains)), "
        "lacks-max(0,min(lacks,remains)) from shared left join names on num_par=dot_dep left join clients on "
        "clt_dep=dot_dep order by dot_dep, dot_ref"));
    for (auto _ : state) benchmark::DoNotOptimize(BareEngine::run(shortages, {}));
}

} // namespace

void registerDepots() {
    const auto byNumber = [](benchmark::State& state) {
        prepare();
        const QStringList units = countedUnits();
        readByRule(state, [&units](int i) { return units[i]; });
    };
    const auto byLot = [](benchmark::State& state) {
        prepare();
        readByRule(state, [](int) { return QStringLiteral("(240)F-A0(10)") + CountedLot; });
    };
    add("depot_count_reading/molven", byNumber, ReadingsARun);
    add("depot_count_reading/bare", readBare, ReadingsARun);
    add("depot_count_by_lot/molven", byLot, ReadingsARun);
    add("replenish_200_depots_of_300/molven", shortagesByRule, 3);
    add("replenish_200_depots_of_300/bare", shortagesBare, 3);
}

} // namespace molven::bench

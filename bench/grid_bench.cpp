#include "bare_engine.h"
#include "bench.h"

#include "data/database.h"
#include "stock/unit_tables.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"

#include <QApplication>
#include <QFile>

#include <sqlite3.h>
#include <unistd.h>

namespace molven::bench {

namespace {

constexpr int PageSize = 128;

double residentMegabytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly)) return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// All units, in the order of their list.
void showUnits(Grid& grid, Database molven) {
    grid.resize(1200, 700);
    grid.rows().setQuery([molven](const Criterion& filter, const Order& order) mutable {
        return molven.select(strproduit, filter, order.orElse(Order{strproduit.pro_ann, strproduit.imm_art}));
    });
    grid.show();
}

void openGrid(benchmark::State& state) {
    double grown = 0;
    for (auto _ : state) {
        const double before = residentMegabytes();
        Workspace workspace;
        Database molven = workspace.open(session().molven());
        Grid grid(QStringLiteral("DBGrid1"), pick_lists::unitColumns(), nullptr);
        showUnits(grid, molven);
        grid.selectRow(grid.rows().rowCount() - 1);
        QApplication::processEvents();
        grown = std::max(grown, residentMegabytes() - before);
    }
    state.counters["grown_MB"] = grown;
    state.counters["process_MB"] = residentMegabytes();
}

/// The same reads: every key in order, then the first and the last page of records.
void openBare(benchmark::State& state) {
    for (auto _ : state) {
        BareEngine engine({session().molven()});
        const auto keys = engine.prepare(QStringLiteral("select rowid from strproduit order by pro_ann,imm_art,rowid"));
        std::vector<sqlite3_int64> found;
        while (sqlite3_step(keys.get()) == SQLITE_ROW) found.push_back(sqlite3_column_int64(keys.get(), 0));
        const auto record = engine.prepare(QStringLiteral("select * from strproduit where rowid = ?"));
        const std::size_t lastPage = (found.size() - 1) / PageSize * PageSize;
        for (const std::size_t first : {std::size_t{0}, lastPage})
            for (std::size_t i = first; i < std::min(first + PageSize, found.size()); ++i)
                BareEngine::run(record, {QByteArray::number(found[i])});
    }
}

/// What typing a filter into a grid of all units takes, character by character, until its rows show.
void filterGrid(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    Grid grid(QStringLiteral("DBGrid1"), pick_lists::unitColumns(), nullptr);
    showUnits(grid, molven);
    const auto show = [&grid](const QString& filter) {
        grid.rows().setFilter(filter);
        if (grid.rows().rowCount() > 0) grid.selectRow(0);
        QApplication::processEvents();
    };
    const QString typed = QStringLiteral("LOT0");
    for (auto _ : state) {
        for (int count = 1; count <= typed.size(); ++count) show(typed.left(count));
        state.PauseTiming();
        show({});
        state.ResumeTiming();
    }
}

} // namespace

void registerGrid() {
    add("unit_grid_to_its_end/molven", openGrid, 3);
    if (!isOnServer()) add("unit_grid_to_its_end/bare", openBare, 3);
    add("four_keys_of_a_unit_filter/molven", filterGrid, 3);
}

} // namespace molven::bench

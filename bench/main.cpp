#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/server_address.h"
#include "data/server_setup.h"
#include "dossier/creation.h"
#include "dossier/migration.h"
#include "dossier/passing_folder.h"
#include "stock/units.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <map>

namespace molven::bench {

namespace {

Session current;

/// Prints, behind the usual table, how many times the bare engine's time each deed takes.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median") medians_[run.run_name.function_name] = run.GetAdjustedRealTime();
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\n%-28s %12s %12s %8s %18s %8s\n", "median", "molven ms", "bare ms", "ratio", "no journal ms",
                    "journal");
        for (const auto& [name, time] : medians_) {
            const std::size_t slash = name.find("/molven");
            if (slash == std::string::npos) continue;
            const std::string deed = name.substr(0, slash);
            const double bare = medians_[deed + "/bare"];
            std::printf("%-28s %12.3f %12.3f %8.2f", deed.c_str(), time, bare, time / bare);
            if (const auto without = medians_.find(deed + "/unjournalled"); without != medians_.end())
                std::printf(" %18.3f %8.2f", without->second, time / without->second);
            std::printf("\n");
        }
    }

private:
    std::map<std::string, double> medians_;
};

void copyFolder(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QFileInfo& entry : QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        const QString target = to + u'/' + entry.fileName();
        if (entry.isDir())
            copyFolder(entry.filePath(), target);
        else
            QFile::copy(entry.filePath(), target);
    }
}

/// The server of the tests, for as long as it is needed, with a dossier on it.
class ThrowAwayServer {
public:
    ~ThrowAwayServer() { run(QStringLiteral("stop")); }

    Session take(const QString& dossier) {
        run(QStringLiteral("start"));
        QFile file(folder_.filePath(QStringLiteral("address")));
        if (!file.open(QIODevice::ReadOnly)) throw Refusal(QStringLiteral("no server"));
        const QString address = QString::fromUtf8(file.readAll()).trimmed().replace(QStringLiteral("%s"), Base);
        server_setup::prepare(address);
        QElapsedTimer timer;
        timer.start();
        migration::migrate(dossier, {}, address, {});
        std::printf("moved to the server in %.1f s\n", static_cast<double>(timer.elapsed()) / 1000);
        return creation::open(passing_folder::at(address));
    }

private:
    void run(const QString& word) {
        QProcess::execute(QStringLiteral(MOLVEN_SOURCES "/tests/server/server.sh"), {word, folder_.path()});
    }

    const QString Base = QStringLiteral("bench");
    QTemporaryDir folder_;
};

void registerDeeds() {
    registerRules();
    registerTransfers();
    registerGrid();
    registerReference();
    registerEnquiries();
    registerScreens();
    registerHome();
    registerPapers();
    registerAccounting();
    registerDepots();
    registerStock();
    registerUpkeep();
}

} // namespace

const Session& session() { return current; }
bool isOnServer() { return server_address::isOne(current.chemin_base); }

QString tracedUnit() {
    Workspace workspace;
    Database molven = workspace.open(current.molven());
    const Recordset delivered = molven.select(strproduit, strproduit.tes_vte == state::Delivered);
    return delivered.at(delivered.count() / 2)[strproduit.imm_art];
}

QStringList unitsInStock(int count) {
    Workspace workspace;
    Database molven = workspace.open(current.molven());
    const Recordset stock = molven.select(
        strproduit, strproduit.tes_vte == state::InStock && strproduit.ref_art == Article, strproduit.imm_art);
    QStringList numbers;
    for (int i = 0; i < count; ++i) numbers.append(stock.at(i)[strproduit.imm_art]);
    return numbers;
}

void addUnjournalled(const std::string& deed, const std::function<void(benchmark::State&)>& function, int iterations) {
    add(
        deed + "/unjournalled",
        [function](benchmark::State& state) {
            BareEngine(QStringList{current.molven()}).execute("alter table strjournal rename to aside");
            function(state);
            BareEngine(QStringList{current.molven()}).execute("alter table aside rename to strjournal");
        },
        iterations);
}

void add(const std::string& name, const std::function<void(benchmark::State&)>& function, int iterations) {
    benchmark::RegisterBenchmark(name.c_str(), function)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Iterations(iterations)
        ->Repetitions(5)
        ->ReportAggregatesOnly();
}

} // namespace molven::bench

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("units"), QStringLiteral("units of the dossier"), QStringLiteral("N"),
          QStringLiteral("100000")},
         {QStringLiteral("dossier"), QStringLiteral("folder that keeps generated dossiers"), QStringLiteral("DIR"),
          QApplication::applicationDirPath() + QStringLiteral("/../bench-dossiers")},
         {QStringLiteral("moteur"), QStringLiteral("sqlite or postgresql"), QStringLiteral("NAME"),
          QStringLiteral("sqlite")}});
    parser.process(application);
    const int units = parser.value(QStringLiteral("units")).toInt();
    const QString folder = QDir(parser.value(QStringLiteral("dossier"))).absoluteFilePath(QString::number(units));
    std::printf("dossier of %d units: %s\n", units, qPrintable(QDir::cleanPath(folder)));
    molven::bench::generate(folder, units);

    const QTemporaryDir copy;
    molven::bench::ThrowAwayServer server;
    if (parser.value(QStringLiteral("moteur")) == u"postgresql") {
        molven::bench::current = server.take(folder);
        molven::bench::registerServer();
        molven::bench::registerGrid();
        molven::bench::registerScreens();
        molven::bench::registerHome();
    } else {
        molven::bench::copyFolder(folder, copy.path());
        molven::bench::current = molven::creation::open(copy.path());
        molven::bench::registerDeeds();
    }
    molven::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

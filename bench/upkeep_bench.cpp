// Works over whole files: archive, backup, conversion, integration of an exchange file.

#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "data/file_copies.h"
#include "dossier/conversion.h"
#include "sales/document_archive.h"
#include "stock/receipt.h"
#include "stock/unit_integration.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace molven::bench {

namespace {

constexpr int NotesArchived = 100'000, UnitsIntegrated = 5'000;
const QString Sender = QStringLiteral("BENCH");

/// So many delivery notes are invoiced, and may be archived; those of a smaller dossier all.
Criterion invoiced() {
    const QString last = QStringLiteral("%1").arg(NotesArchived, 6, 10, QLatin1Char('0'));
    return strlive.fac_no <= last && strlive.fac_cpt == QStringLiteral("T");
}

void invoiceNotes() {
    BareEngine(QStringList{session().vente()}).execute("update strlive set fac_cpt = 'T' where fac_no <= '100000'");
}

void archiveByRule(benchmark::State& state) {
    invoiceNotes();
    Workspace workspace;
    Database vente = workspace.open(session().vente()), historic = workspace.open(session().historic());
    const archive::Subject notes = document_archive::subject(documentKind(QStringLiteral("LIV")));
    qint64 moved = 0;
    for (auto _ : state) {
        moved = archive::move(vente, historic, notes, invoiced(), {}, {}).moved;
        state.PauseTiming();
        archive::move(historic, vente, notes, {}, {}, {});
        state.ResumeTiming();
    }
    state.counters["documents"] = static_cast<double>(moved);
}

void archiveBare(benchmark::State& state) {
    invoiceNotes();
    BareEngine engine({session().vente(), session().historic()});
    const auto move = [&engine](const char* from, const char* to, const char* where) {
        for (const char* table : {"strlivl", "strlive"}) {
            const QByteArray source = QByteArray(from) + '.' + table, target = QByteArray(to) + '.' + table;
            engine.execute(("insert into " + target + " select * from " + source + where).constData());
            engine.execute(("delete from " + source + where).constData());
        }
    };
    for (auto _ : state) {
        engine.execute("begin immediate");
        move("main", "f1", " where fac_no <= '100000'");
        engine.execute("commit");
        state.PauseTiming();
        engine.execute("begin immediate");
        move("f1", "main", "");
        engine.execute("commit");
        state.ResumeTiming();
    }
}

QList<file_copies::Copy> dataFiles(const QString& target) {
    QList<file_copies::Copy> copies;
    for (const QString& name : QDir(session().chemin_base).entryList({QStringLiteral("*.mdb")}, QDir::Files))
        copies.append({session().chemin_base + name, target + u'/' + name});
    return copies;
}

void backUpByRule(benchmark::State& state) {
    const QTemporaryDir disk(session().chemin_tri + QStringLiteral("disque"));
    for (auto _ : state) {
        qint64 bytes = 0;
        for (const qint64 size : file_copies::make(dataFiles(disk.path()), {})) bytes += size;
        state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    }
}

/// The engine's own copies, unchecked.
void backUpBare(benchmark::State& state) {
    const QTemporaryDir disk(session().chemin_tri + QStringLiteral("disque"));
    for (auto _ : state)
        for (const file_copies::Copy& copy : dataFiles(disk.path())) {
            QFile::remove(copy.to);
            BareEngine(QStringList{copy.from}).execute(("vacuum into '" + copy.to.toUtf8() + "'").constData());
        }
}

QList<Record> sentUnits() {
    QList<Record> units;
    Record unit(tripro);
    unit[tripro.ref_art] = Sender;
    unit[tripro.lot_art] = QStringLiteral("LOT1");
    unit[tripro.pro_vte] = Decimal(100);
    for (int i = 1; i <= UnitsIntegrated; ++i) {
        unit[tripro.imm_art] = QStringLiteral("3901%1").arg(i, 4, 10, QLatin1Char('0'));
        units.append(unit);
    }
    return units;
}

void removeIntegrated() {
    BareEngine(QStringList{session().molven()}).execute("delete from strproduit where fou_ref = 'BENCH'");
}

void integrateByRule(benchmark::State& state) {
    BareEngine(QStringList{session().molven()})
        .execute("update strarticle set art_rfou = 'BENCH' where art_ref = 'CFG001'");
    const QList<Record> units = sentUnits();
    Workspace workspace;
    const UnitFiles files = openUnitFiles(workspace, session());
    for (auto _ : state) {
        unit_integration::integrate(
            session(), files, units,
            {QStringLiteral("000001"), QStringLiteral("01/03/2040"), QStringLiteral("01/03/2040")}, {});
        state.PauseTiming();
        removeIntegrated();
        state.ResumeTiming();
    }
}

void integrateBare(benchmark::State& state) {
    BareEngine engine({session().molven()});
    const auto unit = engine.prepare(insertion(strproduit, QStringLiteral("main")));
    for (auto _ : state) {
        engine.execute("begin immediate");
        for (int i = 1; i <= UnitsIntegrated; ++i)
            BareEngine::run(unit, recordValues(strproduit, {{&strproduit.imm_art, QByteArray::number(40030000 + i)},
                                                            {&strproduit.pro_ann, "20"},
                                                            {&strproduit.ref_art, Article.toUtf8()},
                                                            {&strproduit.fou_ref, Sender.toUtf8()},
                                                            {&strproduit.tes_vte, "N"}}));
        engine.execute("commit");
        state.PauseTiming();
        engine.execute("delete from strproduit where fou_ref = 'BENCH'");
        state.ResumeTiming();
    }
}

void convert(benchmark::State& state) {
    const QString source = QStringLiteral(MOLVEN_SOURCES "/tests/data/jet");
    double rows = 0;
    for (auto _ : state) {
        const QTemporaryDir folder;
        const auto outcome = conversion::convert(source, folder.filePath(QStringLiteral("dossier")), false, {});
        for (const conversion::Converted& table : outcome.tables) rows += static_cast<double>(table.stored);
    }
    state.counters["rows"] = benchmark::Counter(rows, benchmark::Counter::kIsRate);
}

} // namespace

void registerUpkeep() {
    add("archive_100000/molven", archiveByRule, 1);
    add("archive_100000/bare", archiveBare, 1);
    add("backup/molven", backUpByRule, 1);
    add("backup/bare", backUpBare, 1);
    add("integration_5000/molven", integrateByRule, 1);
    add("integration_5000/bare", integrateBare, 1);
    add("conversion/molven", convert, 1);
}

} // namespace molven::bench

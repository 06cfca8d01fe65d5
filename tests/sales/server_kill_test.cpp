#include "support/counts.h"
#include "support/cutting_relay.h"
#include "support/processes.h"
#include "support/sets.h"

#include "dossier/check.h"
#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "stock/units.h"

namespace molven {

namespace {

/// What a workstation does when it is killed, and what of it is there afterwards.
struct DeedOnServer {
    const char* name;
    void (*prepare)(test::Dossier&, const QStringList& units);
    void (*act)(const Session&);
    qint64 (*done)(const Session&);
};

QStringList freeUnits(SalesBook& book, int count) {
    QStringList numbers;
    for (const Record& unit :
         book.molven.first(count, strproduit, strproduit.tes_vte == state::InStock, strproduit.imm_art))
        numbers.append(unit[strproduit.imm_art]);
    return numbers;
}

qint64 unitsOf(const Session& session, const QString& unitState) {
    Workspace workspace;
    return workspace.open(session.molven()).count(strproduit, strproduit.tes_vte == unitState);
}

qint64 countIn(const QString& path, const Table& table, const Criterion& criterion = {}) {
    Workspace workspace;
    return workspace.open(path).count(table, criterion);
}

void writeNote(test::Dossier& dossier, const QStringList& units) { dossier.document(QStringLiteral("LIV"), units); }

const DeedOnServer Deeds[] = {
    {"Delivery", [](test::Dossier&, const QStringList&) {},
     [](const Session& session) {
         SalesBook book(session, documentKind(QStringLiteral("LIV")));
         documents::createWith(book, documents::blank(book, QStringLiteral("1")), freeUnits(book, 2));
     },
     [](const Session& session) { return unitsOf(session, state::Delivered) / 2; }},
    {"Receipt", [](test::Dossier&, const QStringList&) {},
     [](const Session& session) {
         Workspace workspace;
         receipts::receive(openUnitFiles(workspace, session), session.rules(),
                           test::Dossier::receipt(QStringLiteral("HIP"), 3));
     },
     [](const Session& session) { return (unitsOf(session, state::InStock) - 2) / 3; }},
    {"InvoiceOfANote", writeNote,
     [](const Session& session) {
         SalesBook invoices(session, documentKind(QStringLiteral("FAC")));
         Transaction transaction(invoices.workspace);
         integration::integrate(invoices, test::newDocument(invoices), QStringLiteral("1"));
         transaction.commit();
     },
     [](const Session& session) { return countIn(session.vente(), strface); }},
    {"RenewalOfATransfer",
     [](test::Dossier& dossier, const QStringList& units) { dossier.document(QStringLiteral("BTR"), units); },
     [](const Session& session) {
         SalesBook notes(session, documentKind(QStringLiteral("BTR")));
         const Record note = documents::last(notes).value();
         QStringList units;
         for (const Record& line : transfer_notes::remaining(notes, note)) units.append(line[strbtrl.fac_imm]);
         transfer_notes::renew(notes, transfer_notes::renewal(notes, note, QStringLiteral("2")), units, {}, note);
     },
     [](const Session& session) { return countIn(session.vente(), strbtre) - 1; }},
    {"ReturnOfASet",
     [](test::Dossier& dossier, const QStringList& units) {
         test::Sets sets(dossier.session);
         sets.addType(QStringLiteral("KIT"), {{QStringLiteral("HIP"), 2}});
         set_journeys::send(sets.files, sets.filled(QStringLiteral("KIT"), units), QStringLiteral("1"), {});
     },
     [](const Session& session) {
         test::Sets sets(session);
         const QString serial = QStringLiteral("00000001");
         sets.takeBack(serial, ancillary_sets::unitsOf(sets.ancillaire, serial).mid(0, 1));
     },
     [](const Session& session) { return countIn(session.vente(), strlive); }},
    {"ClosingOfACount",
     [](test::Dossier& dossier, const QStringList& units) {
         dossier.document(QStringLiteral("BTR"), units);
         Workspace workspace;
         test::countOf(workspace.open(dossier.session.molven())).read(units[0]);
     },
     [](const Session& session) {
         Workspace workspace;
         Database molven = workspace.open(session.molven());
         depot_counts::close(molven, test::countOf(molven));
     },
     [](const Session& session) {
         return countIn(session.molven(), strinvdep, strinvdep.inv_eta == count_state::Closed);
     }},
    {"DeletionOfANote", writeNote,
     [](const Session& session) {
         SalesBook notes(session, documentKind(QStringLiteral("LIV")));
         const Record note = documents::last(notes).value();
         documents::remove(notes, note, documents::linesRead(notes, note));
     },
     [](const Session& session) { return 1 - countIn(session.vente(), strlive); }},
};

} // namespace

class OnServerKill : public testing::TestWithParam<DeedOnServer> {};

TEST_P(OnServerKill, LeavesTheDeedWholeOrNothingOfItAtAnyMessage) {
    test::Dossier dossier;
    GetParam().prepare(dossier, dossier.receive(QStringLiteral("HIP"), 2));
    const QString address = dossier.session.chemin_base.section(u'#', 0, 0);
    test::CuttingRelay relay(address);
    Session distant = dossier.session;
    for (QString* folder : {&distant.chemin_base, &distant.chemin_util}) *folder = relay.through(*folder);
    int killed = 0;
    while (true) {
        const pid_t station = test::station([&] { GetParam().act(distant); });
        const bool wasKilled = relay.serve(station, killed + 1);
        const qint64 done = GetParam().done(dossier.session);
        if (wasKilled) ++killed;
        if (done == 1) break; // at the latest by the one that was not killed
        ASSERT_EQ(done, 0) << "after message " << killed;
        ASSERT_TRUE(wasKilled);
    }
    EXPECT_GT(killed, 10);
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(OnServer, OnServerKill, testing::ValuesIn(Deeds),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace molven

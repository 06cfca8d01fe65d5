#include "support/cutting_relay.h"
#include "support/dossier.h"
#include "support/processes.h"

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

const DeedOnServer Deeds[] = {
    {"Delivery",
     [](const Session& session) {
         SalesBook book(session, documentKind(QStringLiteral("LIV")));
         documents::createWith(book, documents::blank(book, QStringLiteral("1")), freeUnits(book, 2));
     },
     [](const Session& session) { return unitsOf(session, state::Delivered) / 2; }},
    {"Receipt",
     [](const Session& session) {
         Workspace workspace;
         receipts::receive(openUnitFiles(workspace, session), session.rules(),
                           test::Dossier::receipt(QStringLiteral("HIP"), 3));
     },
     [](const Session& session) { return (unitsOf(session, state::InStock) - 2) / 3; }},
};

} // namespace

class OnServerKill : public testing::TestWithParam<DeedOnServer> {};

TEST_P(OnServerKill, LeavesTheDeedWholeOrNothingOfItAtAnyMessage) {
    test::Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 2);
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

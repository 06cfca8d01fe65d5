// A count closed and settled while the program is killed, or by two workstations at once.

#include "support/counts.h"
#include "support/processes.h"

namespace molven {

using test::countOf;
using test::ended;
using test::faultsOf;
using test::Killer;
using test::station;

namespace {

/// Closes the count of the hospital's depot if it is open, and writes what is not written yet.
void settle(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    DepotCount count(molven, molven.find(strinvdep, {}).value());
    if (!count.isClosed()) count = DepotCount(molven, depot_counts::close(molven, count));
    for (const count_documents::Offer& offer : count_documents::offers(molven, count, test::settleable(count)))
        count_documents::write(session, count.header(), offer, QStringLiteral("INCONNU"));
}

/// What is written: the state of the count, its notes of each kind and the units that they settled.
QString stageOf(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    QStringList stage{molven.find(strinvdep, {})->value(strinvdep.inv_eta)};
    const auto settled = [&](const char* mode) {
        return molven.count(strinvlig, strinvlig.lig_mod == QString::fromLatin1(mode));
    };
    for (const qint64 count : {vente.count(strlive), vente.count(strlivl, strlivl.fac_imm != QString()), settled("LIV"),
                               vente.count(strbtre), settled("BTR"), molven.count(strinvlig)})
        stage.append(QString::number(count));
    return stage.join(u' ');
}

} // namespace

TEST(KilledCount, IsClosedAndSettledWholeOrNotAtAll) {
    test::Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 6);
    test::transfer(dossier.session, units.mid(0, 4), "1", "001", "101");
    {
        Workspace workspace;
        DepotCount count = countOf(workspace.open(dossier.session.molven()));
        for (const int i : {0, 1, 4, 5}) count.read(units[i]);
    }
    // Open; closed with the two missing units; delivered; and the two unexpected ones transferred.
    const QStringList stages{QStringLiteral("N 0 0 0 1 0 4"), QStringLiteral("C 0 0 0 1 0 6"),
                             QStringLiteral("C 1 2 2 1 0 6"), QStringLiteral("C 1 2 2 2 2 6")};
    qsizetype reached = 0;
    bool finished = false;
    int kills = 0;
    for (int n = 1; !finished; ++n) {
        ASSERT_LT(n, 300) << "it never ends";
        const int status = ended(station([&] {
            Killer::arm(n);
            settle(dossier.session);
        }));
        finished = !WIFSIGNALED(status);
        if (finished)
            ASSERT_EQ(status, 0);
        else
            ++kills;
        const qsizetype stage = stages.indexOf(stageOf(dossier.session));
        ASSERT_GE(stage, reached) << stageOf(dossier.session).toStdString() << " killed at write " << n;
        if (stage > reached && !finished) n = 0; // the next document is killed from its first write on
        reached = stage;
        if (n % 40 == 0 || finished) {
            ASSERT_EQ(faultsOf(dossier.session), QStringList()) << "killed at write " << n;
        }
    }
    EXPECT_EQ(reached, stages.size() - 1);
    EXPECT_GT(kills, 50);
}

TEST(CountOfTwoWorkstations, TakesEveryReadingAndWritesEachDocumentOnce) {
    constexpr int Units = 60;
    test::Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), Units + 4);
    test::transfer(dossier.session, units, "1", "001", "101");
    QList<pid_t> stations;
    for (int which = 0; which < 2; ++which)
        stations.append(station([&] {
            {
                Workspace workspace;
                DepotCount count = countOf(workspace.open(dossier.session.molven()));
                for (int i = which; i < Units; i += 2) count.read(units[i]);
                while (count.tally().found < Units) count.refresh(); // the other one is still reading
            }
            try {
                settle(dossier.session);
            } catch (const Refusal&) {
                // the other one was faster
            }
        }));
    for (const pid_t child : stations) EXPECT_EQ(ended(child), 0);
    settle(dossier.session); // by whoever comes last; a second closing writes nothing
    EXPECT_EQ(stageOf(dossier.session), QStringLiteral("C 1 4 4 1 0 64"));
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    EXPECT_EQ(molven.count(strinvdep), 1);
    EXPECT_EQ(molven.sum(strinvlig, strinvlig.lig_lec), Decimal(Units));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

} // namespace molven

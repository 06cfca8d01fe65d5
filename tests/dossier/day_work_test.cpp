// What waits to be done in a dossier.

#include "dossier/day_work.h"

#include "data/clock.h"
#include "dossier/upkeep.h"
#include "stock/depot_tables.h"
#include "support/sales.h"

#include <QFile>

namespace molven {

namespace {

const QDate Today(2026, 3, 10);

class DayWork : public test::Sales {
protected:
    DayWork() { Clock::set(Today); }
    ~DayWork() override { Clock::set({}); }

    day_work::Figures count() { return day_work::count(dossier.session, Today); }
    void expire(const QString& unit, const char* month) {
        Workspace workspace;
        workspace.open(dossier.session.molven())
            .update(strproduit, {{strproduit.dat_per, QString::fromLatin1(month)}}, strproduit.imm_art == unit);
    }
};

} // namespace

TEST_F(DayWork, IsNothingInANewDossier) {
    const day_work::Figures none = count();
    EXPECT_EQ(none.toInvoice.count + none.proformas.count + none.withoutPatient + none.received + none.depotsUnder, 0);
    EXPECT_TRUE(none.expiring.isEmpty() && none.written.isEmpty());
    EXPECT_FALSE(none.backup.isValid());
    EXPECT_EQ(none.turnover, QList<Decimal>(day_work::MonthsShown));
    QFile::remove(dossier.session.path(DataFile::Proforma));
    EXPECT_EQ(count().proformas.count, 0) << "a file that the dossier lacks holds nothing";
}

TEST_F(DayWork, IsWhatIsDeliveredSoldShortAndOutOfDate) {
    dossier.receive(QStringLiteral("HIP"), 1, QStringLiteral("03/03/2026")); // eight days ago
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 7, QStringLiteral("04/03/2026"));
    dossier.document(QStringLiteral("LIV"), {units[0]});
    const QString old = dossier.document(QStringLiteral("LIV"), {units[1]}, QStringLiteral("2"));
    dossier.document(QStringLiteral("FAC"), {units[2], units[3]}, QStringLiteral("2"));
    dossier.document(QStringLiteral("BTR"), {units[4]});
    expire(units[4], "02/2026");
    expire(units[5], "06/2026"); // the last month that is soon
    expire(units[6], "07/2026");
    expire(units[0], "02/2026"); // delivered: no longer ours to sort out
    Workspace workspace;
    Database vente = workspace.open(dossier.session.vente()), molven = workspace.open(dossier.session.molven());
    vente.update(strlive, {{strlive.tri_datf, QStringLiteral("20260129")}}, strlive.fac_no == old);
    molven.update(strproduit, {{strproduit.reg_pat, QString()}}, strproduit.imm_art == units[2]);
    Record endowment(strdotation);
    endowment[strdotation.dot_dep] = QStringLiteral("101");
    endowment[strdotation.dot_ref] = QStringLiteral("HIP");
    endowment[strdotation.dot_qte] = 4;
    molven.insert(endowment);

    const day_work::Figures found = count();
    EXPECT_EQ(found.toInvoice.count, 2);
    EXPECT_EQ(found.toInvoice.amount, Decimal(190)) << "100, and 100 less the client's tenth";
    EXPECT_EQ(found.toInvoice.oldest, QStringLiteral("20260129"));
    EXPECT_EQ(found.withoutPatient, 1);
    ASSERT_EQ(found.expiring.size(), 2);
    EXPECT_EQ(found.expiring[0].depot, QStringLiteral("001"));
    EXPECT_EQ(std::pair(found.expiring[0].past, found.expiring[0].soon), std::pair(0LL, 1LL));
    EXPECT_EQ(found.expiring[1].name, QStringLiteral("DEPOT 101"));
    EXPECT_EQ(std::pair(found.expiring[1].past, found.expiring[1].soon), std::pair(1LL, 0LL));
    EXPECT_EQ(std::pair(found.depotsUnder, found.unitsLacking), std::pair(1LL, 3LL));
    EXPECT_EQ(found.received, 7);
    EXPECT_EQ(found.firstReceived, units.first());
    EXPECT_EQ(found.lastReceived, units.last());
    QStringList written;
    for (const day_work::Written& one : found.written)
        written.append(one.kind.get().mode + u' ' + QString::number(one.count));
    EXPECT_EQ(written.join(u','), QStringLiteral("LIV 1,FAC 1,BTR 1"));
    EXPECT_EQ(found.turnover.last(), Decimal(200));
}

TEST_F(DayWork, IsCountedAgainOnceSomebodyWroteAndCanBeGivenUp) {
    day_work::Changes changes(dossier.session);
    EXPECT_FALSE(changes.happened());
    dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    EXPECT_TRUE(changes.happened());
    EXPECT_FALSE(changes.happened());
    const QTemporaryDir disk;
    upkeep::backUp(dossier.session, disk.path(), {});
    EXPECT_EQ(count().backup, Today);
    EXPECT_NE(test::refusalOf([&] { day_work::count(dossier.session, Today, [] { return false; }); }),
              QStringLiteral("(accepté)"));
}

} // namespace molven

#include "support/movements.h"
#include "support/processes.h"

#include "data/dates.h"
#include "dossier/check.h"
#include "dossier/references.h"
#include "shell/company_rules.h"
#include "stock/inventory_counts.h"
#include "stock/movement_listing.h"

namespace molven {

using test::Movements;
using test::refusalOf;

TEST_F(Movements, MakeStockAndAveragePrice) {
    add("E", "10", "5");
    EXPECT_EQ(stockOf(), QStringLiteral("10/5/5"));
    add("E", "2.5", "10");
    EXPECT_EQ(stockOf(), QStringLiteral("12.5/6/10"));
    add("I", "99", "1");
    EXPECT_EQ(stockOf(), QStringLiteral("12.5/6/10"));
    add("S", "4.5", "6");
    EXPECT_EQ(stockOf(), QStringLiteral("8/6/10"));
    add("S", "8", "6");
    EXPECT_EQ(stockOf(), QStringLiteral("0/6/10"));
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
}

TEST_F(Movements, DeletedTakeTheirEffectBack) {
    const Record first = add("E", "10", "5");
    const Record second = add("E", "10", "7.001");
    EXPECT_EQ(stockOf(), QStringLiteral("20/6.001/7.001"));
    movements::remove(files, second);
    EXPECT_EQ(stockOf(), QStringLiteral("10/5.001/7.001"));
    const Record exit = add("S", "4", "5.001");
    movements::remove(files, exit);
    EXPECT_EQ(stockOf(), QStringLiteral("10/5.001/7.001"));
    movements::remove(files, first);
    EXPECT_EQ(stockOf(), QStringLiteral("0/0.01/7.001"));
    EXPECT_EQ(refusalOf([&] { movements::remove(files, first); }),
              QStringLiteral("Ce mouvement a été modifié ou supprimé par un autre poste"));
}

TEST_F(Movements, ChangedUndoTheirFormerEffectFirst) {
    Record entry = add("E", "10", "5");
    Record changed = entry;
    changed[strmvtstk.qte_stk] = 4;
    changed[strmvtstk.pri_stk] = 6;
    entry = movements::change(files, entry, changed);
    EXPECT_EQ(stockOf(), QStringLiteral("4/6/6"));
    changed = entry;
    changed[strmvtstk.eta_stk] = movement::Exit;
    entry = movements::change(files, entry, changed);
    EXPECT_EQ(stockOf(), QStringLiteral("-4/6/6"));
    changed = entry;
    changed[strmvtstk.eta_stk] = movement::Inventory;
    movements::change(files, entry, changed);
    EXPECT_EQ(stockOf(), QStringLiteral("0/0/6"));
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
}

TEST_F(Movements, OfTwinsAreToldApartAndChangedOnceOnly) {
    const Record first = add("E", "1", "5"), twin = add("E", "1", "5");
    movements::remove(files, first);
    EXPECT_EQ(refusalOf([&] { movements::remove(files, first); }),
              QStringLiteral("Ce mouvement a été modifié ou supprimé par un autre poste"));
    Record changed = twin;
    changed[strmvtstk.qte_stk] = 3;
    movements::change(files, twin, changed);
    EXPECT_EQ(test::dataErrorOf([&] { movements::change(files, twin, twin); }), DataError::RecordChanged);
    EXPECT_THAT(refusalOf([&] { movements::remove(files, twin); }).toStdString(),
                testing::HasSubstr("modifié par un autre poste"));
    EXPECT_EQ(stockOf(), QStringLiteral("3/5/5"));
}

struct RefusedMovement {
    const char* name;
    void (*spoil)(Record&);
    const char* text;
    const char* field;
};

class RefusedMovements : public Movements, public testing::WithParamInterface<RefusedMovement> {};

TEST_P(RefusedMovements, WriteNothing) {
    Record spoilt = movement("E", "10", "5");
    GetParam().spoil(spoilt);
    const auto write = [&] { movements::add(files, spoilt); };
    EXPECT_EQ(refusalOf(write), QString::fromUtf8(GetParam().text));
    EXPECT_EQ(test::refusedField(write), QString::fromLatin1(GetParam().field));
    EXPECT_EQ(files.molven.count(strmvtstk), 0);
    EXPECT_EQ(stockOf(), QStringLiteral("0/0/0"));
}

INSTANTIATE_TEST_SUITE_P(
    Movements, RefusedMovements,
    testing::Values(
        RefusedMovement{"reference", [](Record& m) { m[strmvtstk.ref_stk] = QString(); }, " Référence obligatoire",
                        "ref_stk"},
        RefusedMovement{"quantity", [](Record& m) { m[strmvtstk.qte_stk] = 0; }, " quantité obligatoire", "qte_stk"},
        RefusedMovement{"kind", [](Record& m) { m[strmvtstk.eta_stk] = QStringLiteral("X"); },
                        " Etat du mouvement incorrecte", "eta_stk"},
        RefusedMovement{"unknown", [](Record& m) { m[strmvtstk.ref_stk] = QStringLiteral("L'X"); },
                        " cette référence n'existe pas", "ref_stk"},
        RefusedMovement{"followed", [](Record& m) { m[strmvtstk.ref_stk] = QStringLiteral("HIP"); },
                        "Ce choix est réservé aux références non suivies", "ref_stk"},
        RefusedMovement{"unstocked", [](Record& m) { m[strmvtstk.ref_stk] = QStringLiteral("FEE"); },
                        "Cet article n'est pas tenu en stock", "ref_stk"},
        RefusedMovement{"negative", [](Record& m) { m[strmvtstk.qte_stk] = -1; }, "Taper une valeur positive !!",
                        "qte_stk"},
        RefusedMovement{"thousandth",
                        [](Record& m) { m[strmvtstk.qte_stk] = Decimal::fromText(QStringLiteral("1.005")); },
                        "Quantité incorrecte", "qte_stk"},
        RefusedMovement{"scanned", [](Record& m) { m[strmvtstk.qte_stk] = Decimal(26'030'001); }, "Quantité incorrecte",
                        "qte_stk"},
        RefusedMovement{"price", [](Record& m) { m[strmvtstk.pri_stk] = -1; }, "Prix incorrect", "pri_stk"},
        RefusedMovement{"date", [](Record& m) { m[strmvtstk.dat_stk] = QStringLiteral("31/02/2026"); }, "date invalide",
                        "dat_stk"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(Movements, HoldTheirArticleToItsFollowUp) {
    const Record entry = add("E", "10", "5");
    movements::change(files, add("S", "10", "5"), movement("S", "10", "5"));
    const auto before = articles::find(files.molven, QStringLiteral("SCREW"));
    articles::Entry entryOf = articles::entryOf(*before);
    entryOf.followed = QStringLiteral("O");
    entryOf.article[strarticle.art_nho] = QStringLiteral("CE 1");
    EXPECT_EQ(refusalOf([&] { references::saveArticle(dossier.session, entryOf, before); }),
              QStringLiteral("Cet article a 2 mouvements de stock : son suivi ne change plus"));
}

TEST_F(Movements, AreListedByReferenceAndDateWithTotals) {
    add("S", "3", "5", QStringLiteral("10/03/2026"));
    add("E", "10", "5", QStringLiteral("05/12/2025"));
    add("I", "7", "5", QStringLiteral("31/12/2025"));
    const auto kinds = [&](const MovementQuery& query) {
        QString found;
        for (const Record& row : movement_listing::find(files, query)) found += row[strlistemvt.eta_stk];
        return found;
    };
    const QString screw = QStringLiteral("SCREW"), none;
    EXPECT_EQ(kinds({screw, none, none, none}), QStringLiteral("EIS"));
    EXPECT_EQ(kinds({QStringLiteral("scr*"), QStringLiteral("31/12/2025"), none, none}), QStringLiteral("IS"));
    EXPECT_EQ(kinds({QStringLiteral("*"), none, QStringLiteral("31/12/2025"), movement::Entry}), QStringLiteral("E"));
    MovementTotals totals;
    for (const Record& row : movement_listing::find(files, {screw, none, none, none})) totals.add(row);
    EXPECT_EQ(totals.inventory, Decimal(7));
    EXPECT_EQ(totals.balance(), Decimal(7));
    for (const auto& [query, text] :
         {std::pair(MovementQuery{none, none, none, none}, "Veuillez saisir une référence"),
          std::pair(MovementQuery{QStringLiteral("ZZ"), none, none, none}, "Référence Inconnue"),
          std::pair(MovementQuery{screw, QStringLiteral("32/01/2026"), none, none}, "date début non valide"),
          std::pair(MovementQuery{screw, none, QStringLiteral("x"), none}, "date fin non valide"),
          std::pair(MovementQuery{screw, QStringLiteral("02/01/2026"), QStringLiteral("01/01/2026"), none},
                    "date fin < date début")})
        EXPECT_EQ(refusalOf([&] { kinds(query); }), QString::fromUtf8(text));
}

TEST_F(Movements, OfAnInventoryComeFromTheCountsOnce) {
    add("E", "10", "5");
    const Record asRead = inventory_counts::all(files.molven).first();
    Record counts = asRead;
    counts[inventory_counts::strcomptage.stk1_art] = 4;
    counts[inventory_counts::strcomptage.stk3_art] = Decimal::fromText(QStringLiteral("4.5"));
    inventory_counts::save(files.molven, asRead, counts);
    EXPECT_THAT(refusalOf([&] { inventory_counts::save(files.molven, asRead, counts); }).toStdString(),
                testing::HasSubstr("compté sur un autre poste"));
    const Record counted = inventory_counts::all(files.molven).first();
    EXPECT_EQ(counted[inventory_counts::strcomptage.difference], Decimal::fromText(QStringLiteral("-1.5")));

    const QString day = QStringLiteral("31/03/2026");
    const CompanyRules rules = dossier.session.rules();
    EXPECT_EQ(inventory_counts::writeInventory(files, rules, day), 1);
    const auto written = files.stocks.find(strmvtstk, strmvtstk.eta_stk == movement::Inventory);
    EXPECT_EQ((*written)[strmvtstk.qte_stk], Decimal::fromText(QStringLiteral("8.5")));
    EXPECT_EQ(written->value(strmvtstk.com_stk), QStringLiteral("INVENTAIRE AU 31/03/2026"));
    EXPECT_EQ((*written)[strmvtstk.pri_stk], Decimal(5));
    EXPECT_EQ(stockOf(), QStringLiteral("10/5/5"));
    EXPECT_EQ(movements::of(files, QStringLiteral("SCREW")).size(), 2);
    EXPECT_EQ(refusalOf([&] { inventory_counts::writeInventory(files, rules, day); }), QStringLiteral("Aucun article"));

    Record leftOut = inventory_counts::all(files.molven).first();
    const Record before = leftOut;
    leftOut[inventory_counts::strcomptage.stk2_art] = 3;
    leftOut[inventory_counts::strcomptage.stk_art] = QStringLiteral("N");
    inventory_counts::save(files.molven, before, leftOut);
    EXPECT_EQ(refusalOf([&] { inventory_counts::writeInventory(files, rules, day); }), QStringLiteral("Aucun article"));
}

namespace {

/// An entry of one at 5, by a workstation of its own.
void enterOne(const Session& session) {
    Workspace workspace;
    Record entry = movements::blank(QStringLiteral("SCREW"));
    entry[strmvtstk.eta_stk] = movement::Entry;
    entry[strmvtstk.qte_stk] = 1;
    entry[strmvtstk.pri_stk] = 5;
    movements::add(openMovementFiles(workspace, session), entry);
}

qint64 movementsIn(const Session& session) {
    Workspace workspace;
    return workspace.open(session.molven()).count(strmvtstk);
}

} // namespace

TEST(MovementStations, LoseNoUpdateOfTheStock) {
    test::Dossier dossier;
    constexpr int Each = 40;
    const auto work = [&] {
        for (int i = 0; i < Each; ++i) enterOne(dossier.session);
    };
    const pid_t first = test::station(work), second = test::station(work);
    EXPECT_EQ(test::ended(first) + test::ended(second), 0);
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(2 * Each));
    EXPECT_EQ(movementsIn(dossier.session), 2 * Each);
}

TEST(MovementStations, KilledAtAnyWriteLeaveMovementAndStockTogether) {
    test::Dossier dossier;
    bool isFinished = false;
    int kills = 0;
    for (int n = 1; !isFinished; ++n) {
        ASSERT_LT(n, 200) << "the movement never ends";
        const int status = test::ended(test::station([&] {
            test::Killer::arm(n);
            enterOne(dossier.session);
        }));
        isFinished = !WIFSIGNALED(status);
        kills += isFinished ? 0 : 1;
        ASSERT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(static_cast<long long>(movementsIn(dossier.session))))
            << "killed at write " << n;
    }
    EXPECT_GT(kills, 10);
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
}

} // namespace molven

// Parts of a selection that are found while one types.

#include "data/format.h"
#include "support/dossier.h"
#include "ui/record_model.h"

#include <QTest>

namespace molven {

namespace {

/// Over one file or, some units being archived, over two; in a folder with all keys at hand, on a server with those of
/// some windows.
class PartsOfASelection : public testing::TestWithParam<bool> {
protected:
    PartsOfASelection()
        : molven(workspace.open(dossier.session.molven())), archive(workspace.open(dossier.session.historic())) {
        Keys::windowSize = 4;
        march = dossier.receive(QStringLiteral("HIP"), 12);
        april = dossier.receive(QStringLiteral("GRAFT"), 2, QStringLiteral("05/04/2026"));
        molven.update(strproduit, {{strproduit.pro_ann, QStringLiteral("19")}}, strproduit.imm_art == march[10]);
        molven.update(strproduit, {{strproduit.lot_art, QStringLiteral("Été-2")}}, strproduit.imm_art == march[3]);
        if (GetParam())
            molven.moveTo(archive, strproduit,
                          isOneOf(strproduit.imm_art, {march[0], march[2], march[3], march[9], march[11], april[0]}));
    }
    ~PartsOfASelection() override { Keys::windowSize = 4096; }
    Recordset select(const Criterion& criterion, const Order& order) {
        return GetParam() ? molven.selectWith({archive}, strproduit, criterion, order)
                          : molven.select(strproduit, criterion, order);
    }
    Recordset all() { return select({}, Order::descending(strproduit.imm_art)); }
    static QStringList numbers(const Recordset& units) {
        QStringList found;
        for (const Record& unit : units) found.append(unit[strproduit.imm_art]);
        return found;
    }
    QStringList beginning(const QList<const Field*>& fields, const char* text) {
        return numbers(all().beginningWith(fields, QString::fromUtf8(text)));
    }

    test::Dossier dossier;
    Workspace workspace;
    Database molven, archive;
    QStringList march, april;
};

INSTANTIATE_TEST_SUITE_P(OverFiles, PartsOfASelection, testing::Bool());

} // namespace

TEST_P(PartsOfASelection, BeginWithATextInTheirOwnOrder) {
    EXPECT_EQ(beginning({&strproduit.imm_art}, "2604"), (QStringList{april[1], april[0]}));
    EXPECT_EQ(beginning({&strproduit.imm_art}, "2603001"), (QStringList{march[11], march[10], march[9]}))
        << "of both centuries";
    EXPECT_EQ(beginning({&strproduit.imm_art, &strproduit.ref_art}, "gra"), (QStringList{april[1], april[0]}));
    EXPECT_EQ(beginning({&strproduit.lot_art}, "été"), QStringList()) << "a code's accents count";
    EXPECT_EQ(beginning({&strproduit.lot_art}, "Ét"), QStringList(march[3]));
    EXPECT_EQ(beginning({&strproduit.pro_li1}, "ARTICLE"), QStringList()) << "no index serves it";
    const Recordset grafts = select(strproduit.ref_art == QStringLiteral("GRAFT"), {});
    EXPECT_EQ(grafts.beginningWith({&strproduit.imm_art}, QStringLiteral("26")).count(), 2)
        << "of the selection, not of the table";
}

TEST_P(PartsOfASelection, StandInTheirPlacesWhereverTheyAreLookedAt) {
    Recordset units = all();
    const auto numberAt = [&units](qint64 place) { return QString(units.at(place)[strproduit.imm_art]); };
    ASSERT_EQ(units.count(), 14);
    EXPECT_EQ(numberAt(13), march[0]);
    EXPECT_EQ(numberAt(7), march[6]);
    EXPECT_EQ(numberAt(0), april[1]);
    EXPECT_TRUE(units.findFirst(strproduit.imm_art == march[2]));
    EXPECT_EQ(units.position(), 11);
    EXPECT_EQ(QString(units[strproduit.imm_art]), march[2]);
    EXPECT_FALSE(units.findFirst(strproduit.imm_art == QStringLiteral("99010001")));
    units.remove();
    EXPECT_EQ(QString(units[strproduit.imm_art]), march[1]);
    EXPECT_EQ(numbers(units).size(), 13);
}

TEST_P(PartsOfASelection, AreWalkedThroughAsTheyAreThoughOthersRemovedSome) {
    const Recordset units = all();
    Workspace elsewhere;
    elsewhere.open(dossier.session.molven()).remove(strproduit, isOneOf(strproduit.imm_art, {april[1], march[6]}));
    EXPECT_EQ(units.count(), 14) << "as it was opened";
    EXPECT_EQ(test::dataErrorOf([&] { units.at(0); }), DataError::RecordDeleted);
    EXPECT_EQ(QString(units.at(13)[strproduit.imm_art]), march[0]);
    QStringList walked;
    for (qint64 place = 0; place < units.count(); ++place)
        test::dataErrorOf([&] { walked.append(units.at(place)[strproduit.imm_art]); });
    EXPECT_FALSE(walked.contains(march[6]));
    Recordset known = select(isOneOf(strproduit.imm_art, march), strproduit.imm_art);
    known.moveLast();
    EXPECT_EQ(QString(known[strproduit.imm_art]), march[11]);
    EXPECT_EQ(numbers(known), march.mid(0, 6) + march.mid(7));
}

TEST_P(PartsOfASelection, AreSearchedThroughUntilStopped) {
    const Criterion held = contains(strproduit.lot_art, QStringLiteral("ete"));
    int told = 0;
    const auto found = all().meeting(held, [&](int, int total) {
        told = total;
        return true;
    });
    ASSERT_TRUE(found);
    EXPECT_EQ(numbers(*found), QStringList(march[3]));
    EXPECT_EQ(told, 14);
    const auto both = all().meeting(strproduit.imm_art < march[8], [](int, int) { return true; });
    EXPECT_EQ(numbers(*both->meeting(strproduit.imm_art > march[0], [](int, int) { return true; })),
              (QStringList{march[7], march[6], march[5], march[4], march[3], march[2], march[1]}))
        << "a part of a part";
    EXPECT_FALSE(all().meeting(held, [](int, int) { return false; }));
}

TEST_P(PartsOfASelection, AreWhatAFilterShowsOfALargeListUntilItIsSearchedThrough) {
    RecordModel model({{&strproduit.imm_art, QStringLiteral("Immat.")}, {&strproduit.lot_art, QStringLiteral("Lot")}});
    model.setSearchedThrough(5);
    model.setQuery([this](const Criterion& filter, const Order& order) {
        return select(filter, order.orElse(Order(strproduit.imm_art)));
    });
    ASSERT_EQ(model.rowCount(), 14);
    model.setFilter(QStringLiteral("te-2"));
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_TRUE(model.showsBeginnings());
    model.searchThrough([](int, int) { return false; });
    EXPECT_EQ(model.rowCount(), 0) << "stopped";
    model.searchThrough([](int, int) { return true; });
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_FALSE(model.showsBeginnings());
    model.setFilter(QStringLiteral("2604"));
    EXPECT_EQ(model.rowCount(), 2);
    model.sort(0, Qt::DescendingOrder);
    EXPECT_EQ(model.text(0, 0), april[1]);
    dossier.receive(QStringLiteral("HIP"), 1, QStringLiteral("06/04/2026"));
    model.refresh();
    EXPECT_EQ(model.rowCount(), 3) << "read anew under the same filter";
    model.setFilter({});
    EXPECT_EQ(model.rowCount(), 15);
    EXPECT_EQ(model.unfilteredCount(), 15);
}

} // namespace molven

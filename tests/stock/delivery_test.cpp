// A delivery read unit by unit.

#include "stock/delivery.h"

#include "reference/article_tables.h"
#include "support/dossier.h"

namespace molven {

namespace {

class Deliveries : public testing::Test {
protected:
    Deliveries() : files(openUnitFiles(workspace, dossier.session)) {
        for (const auto& [reference, ean] : {std::pair("HIP", "4006381333931"), std::pair("CUP", "4006381333948")})
            files.molven.update(strarticle, {{strarticle.art_ean, QString::fromLatin1(ean)}},
                                strarticle.art_ref == QString::fromLatin1(reference));
        delivery.supplier = QStringLiteral("1");
        delivery.deliveryNumber = QStringLiteral("BL7");
        delivery.deliveryDate = QStringLiteral("05/03/2026");
    }
    void read(const char* scanned) {
        units.append(deliveries::read(files.molven, QString::fromLatin1(scanned), units));
        units.last().price = QStringLiteral("50");
    }
    QList<receipts::Created> receive() { return deliveries::receive(files, dossier.session.rules(), delivery, units); }

    test::Dossier dossier;
    Workspace workspace;
    UnitFiles files;
    Receipt delivery;
    QList<DeliveredUnit> units;
};

} // namespace

TEST_F(Deliveries, GiveEachUnitItsOwnSerialLotAndExpiry) {
    for (const char* scanned : {"(01)04006381333931(17)301231(10)L1(21)S1", "(01)04006381333931(17)301231(10)L1(21)S2",
                                "(01)04006381333931(17)310630(10)L2(21)S3"})
        read(scanned);
    const QList<receipts::Created> created = receive();
    ASSERT_EQ(created.size(), 2);
    EXPECT_EQ(created[0].first, QStringLiteral("26030001"));
    EXPECT_EQ(created[0].last, QStringLiteral("26030002"));
    const Record second = dossier.unit(QStringLiteral("26030002")), third = dossier.unit(created[1].first);
    EXPECT_EQ(QString(second[strproduit.fou_imm]), QStringLiteral("S2"));
    EXPECT_EQ(QString(third[strproduit.fou_imm]), QStringLiteral("S3"));
    EXPECT_EQ(QString(third[strproduit.lot_art]), QStringLiteral("L2"));
    EXPECT_EQ(QString(third[strproduit.dat_per]), QStringLiteral("06/2031"));
    EXPECT_EQ(QString(third[strproduit.num_liv]), QStringLiteral("BL7"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(3));
}

TEST_F(Deliveries, AreReceivedWholeOrNotAtAll) {
    read("(01)04006381333931(17)301231(10)L1(21)S1");
    read("(01)04006381333948(17)301231(10)L1"); // manufactured: its certificates cannot be scanned
    EXPECT_EQ(test::refusalOf([&] { receive(); }),
              QStringLiteral("CUP lot L1 : Les zones FABRIQUE sont obligatoires en saisie"));
    EXPECT_EQ(files.molven.count(strproduit), 0);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(0));
    const auto stopped = [&] {
        deliveries::receive(files, dossier.session.rules(), delivery, units.first(1), [](int, int) { return false; });
    };
    EXPECT_EQ(test::refusalOf(stopped), QStringLiteral("Opération abandonnée"));
    EXPECT_EQ(files.molven.count(strproduit), 0);
}

TEST_F(Deliveries, RefuseWhatNamesNoArticleAndASerialReadTwice) {
    read("(01)04006381333931(10)L1(21)s1");
    const std::pair<const char*, const char*> cases[] = {
        {"26030001", "Ce n'est pas un code de fournisseur : 26030001"},
        {"(01)04006381333955(10)L1", "Référence inconnue : 04006381333955"},
        {"(01)04006381333931(10)L2(21)S1", "N° de série saisi deux fois : S1"}};
    for (const auto& [scanned, told] : cases)
        EXPECT_EQ(test::refusalOf([&, code = scanned] { read(code); }), QString::fromUtf8(told));
}

TEST_F(Deliveries, ProposeTheLastPurchasePrice) {
    dossier.receive(QStringLiteral("HIP"), 1);
    const DeliveredUnit unit = deliveries::read(files.molven, QStringLiteral("(01)04006381333931(10)L1"), {});
    EXPECT_EQ(unit.price, QStringLiteral("50"));
    EXPECT_EQ(unit.designation, QStringLiteral("ARTICLE HIP"));
}

} // namespace molven

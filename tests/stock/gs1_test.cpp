#include "stock/gs1.h"

#include "support/dossier.h"

namespace molven {

using test::refusalOf;

namespace {

const QDate Today(2026, 11, 24);

/// "gtin lot serial expiry reference" of a scan, "{GS}" standing for the separator.
QString read(const char* scan) {
    const QString text = QString::fromUtf8(scan).replace(QStringLiteral("{GS}"), QString(QChar(0x1D)));
    QString told;
    const QString refused = refusalOf([&] {
        const Gs1Code code = gs1::parse(text, Today);
        told = QStringList{code.gtin, code.lot, code.serial, code.expiry.toString(QStringLiteral("yyyy-MM-dd")),
                           code.supplierReference}
                   .join(u'|');
    });
    return told.isEmpty() ? refused : told;
}

} // namespace

TEST(Scans, GiveArticleLotExpiryAndSerialInAnyOrder) {
    const char* whole = "04006381333931|LOT-7|S1|2031-12-31|";
    EXPECT_EQ(read("]d20104006381333931173112311"
                   "0LOT-7{GS}21S1"),
              QString::fromUtf8(whole));
    EXPECT_EQ(read("]C1{GS}21S1{GS}10LOT-7{GS}010400638133393117311231"), QString::fromUtf8(whole));
    EXPECT_EQ(read("(01)04006381333931(17)311231(10)LOT-7(21)S1"), QString::fromUtf8(whole));
    EXPECT_EQ(read("0104006381333931173112001"
                   "0LOT-7<GS>21S1"),
              QString::fromUtf8(whole))
        << "day 00 is the end of the month";
    EXPECT_EQ(read("010400638133393111260101240REF-9"), QStringLiteral("04006381333931||||REF-9"));
    EXPECT_EQ(read("17760101"), QStringLiteral("|||2076-01-01|"));
    EXPECT_EQ(read("17770101"), QStringLiteral("|||1977-01-01|"));
    EXPECT_EQ(gs1::parse(QStringLiteral("0104006381333931"), Today).ean(), QStringLiteral("4006381333931"));
}

TEST(Scans, SayWhatIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"0104006381333932", "clé du GTIN fausse 04006381333932"},
        {"]d2010400638", "valeur trop courte pour l'identifiant 01"},
        {"]d217311331", "date 311331"},
        {"]d299ABC", "identifiant inconnu 99A"},
        {"]d210", "valeur trop courte pour l'identifiant 10"},
        {"]d210123456789012345678901", "valeur trop longue pour l'identifiant 10"},
        {"]d2010400638133393A", "clé du GTIN fausse 0400638133393A"}};
    for (const auto& [scan, why] : cases)
        EXPECT_EQ(read(scan), QStringLiteral("Code scanné incorrect : ") + QString::fromUtf8(why)) << scan;
}

TEST(Scans, AreToldFromWhatAPersonTypes) {
    for (const char* typed : {"CFG001", "LOT-7", "01", "0112", "(A)", "]", "4006381333931"})
        EXPECT_FALSE(gs1::isScan(QString::fromUtf8(typed))) << typed;
    for (const char* scan : {"]d201", "]C1x", "(01)1", "0104006381333931", "<GS>10A"})
        EXPECT_TRUE(gs1::isScan(QString::fromUtf8(scan))) << scan;
}

} // namespace molven

#include "data/dates.h"
#include "data/format.h"
#include "support/dossier.h"

namespace molven {

namespace {
Decimal decimalOf(const char* text) { return Decimal::parse(QString::fromUtf8(text)).value(); }
} // namespace

TEST(Decimals, TypedWithPointOrCommaAndRefusedWhenNotANumber) {
    EXPECT_EQ(decimalOf("1 234,50"), decimalOf("1234.5"));
    EXPECT_EQ(decimalOf("-,5"), decimalOf("-0.5"));
    EXPECT_EQ(decimalOf("007"), Decimal(7));
    for (const char* wrong : {"", " ", "abc", "1,2,3", "12-", "1e5", "0x10", ","})
        EXPECT_FALSE(Decimal::parse(QString::fromUtf8(wrong)).has_value()) << wrong;
}

TEST(Decimals, MoneyIsExactWhereBinaryNumbersAreNot) {
    EXPECT_EQ(decimalOf("0.1") + decimalOf("0.2"), decimalOf("0.3"));
    EXPECT_EQ((decimalOf("0.29") * Decimal(100)).floored(0), Decimal(29));
    EXPECT_EQ(decimalOf("1.005").rounded(2), decimalOf("1.01"));
    EXPECT_EQ(decimalOf("-2.345").rounded(2), decimalOf("-2.35"));
    EXPECT_EQ((Decimal(1) / Decimal(3)).toFixed(2), QStringLiteral("0.33"));
    EXPECT_EQ(decimalOf("-0.001").toFixed(2), QStringLiteral("0.00"));
}

TEST(Decimals, KeepEveryDigitHoweverShortOrLongTheyAre) {
    for (const char* text :
         {"0", "7", "12.5", "-12.05", "0.000001", "-0.0000001", "1000000000000", "999999999999.999999",
          "-123456789012345678", "123456789012345678901.123456", "0.123456789012"}) {
        const QString number = QString::fromUtf8(text), wide = QStringLiteral(" %1").arg(number);
        EXPECT_EQ(decimalOf(text).toString(), number);
        EXPECT_EQ(Decimal::parse(wide), decimalOf(text)) << text;
        EXPECT_EQ((decimalOf(text) * Decimal(3) - decimalOf(text) - decimalOf(text)).toString(), number);
        EXPECT_EQ(decimalOf(text).rounded(12), decimalOf(text)) << text;
    }
    EXPECT_EQ(decimalOf("-0.00").toString(), QStringLiteral("0"));
}

struct PatternCase {
    const char* value;
    const char* pattern;
    const char* shown;
};

class Patterns : public testing::TestWithParam<PatternCase> {};

TEST_P(Patterns, WriteNumbersAsTheScreensAndPapersShowThem) {
    const PatternCase& c = GetParam();
    EXPECT_EQ(format(decimalOf(c.value), QString::fromUtf8(c.pattern)), QString::fromUtf8(c.shown));
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, Patterns,
    testing::Values(PatternCase{"1234.5", "#####0.00", "1234,50"}, PatternCase{"0", "#####0.00", "0,00"},
                    PatternCase{"0.005", "#####0.00", "0,01"}, PatternCase{"-3.999", "#####0.00", "-4,00"},
                    PatternCase{"7", "000000", "000007"}, PatternCase{"1234567", "000000", "1234567"},
                    PatternCase{"12345.6", "### ##0.00", "12 345,60"}, PatternCase{"5", "### ##0.00", "5,00"},
                    PatternCase{"12", "#0", "12"}, PatternCase{"1.2345", "#####0.000", "1,235"},
                    PatternCase{"-0.001", "#0.00", "0,00"}));

TEST(Codes, ArePaddedOnlyWhenTheyAreNumbers) {
    EXPECT_EQ(padded(QStringLiteral(" 12 "), 6), QStringLiteral("000012"));
    EXPECT_EQ(padded(QStringLiteral("A1"), 6), QStringLiteral("A1"));
    EXPECT_EQ(padded(QString(), 6), QString());
    EXPECT_EQ(padded(QStringLiteral("1234567"), 6), QStringLiteral("1234567"));
}

TEST(Counts, AgreeWithTheirNoun) {
    EXPECT_EQ(counted(0, QStringLiteral("unité")), QStringLiteral("0 unité"));
    EXPECT_EQ(counted(1, QStringLiteral("unité")), QStringLiteral("1 unité"));
    EXPECT_EQ(counted(2, QStringLiteral("unité")), QStringLiteral("2 unités"));
}

TEST(Dates, HaveASortKeyAndRefuseDaysThatDoNotExist) {
    EXPECT_EQ(sortKey(QStringLiteral("05/03/2014")), QStringLiteral("20140305"));
    EXPECT_EQ(sortKey(EmptyDate), QString());
    EXPECT_FALSE(dateFromText(QStringLiteral("31/02/2026")).isValid());
    EXPECT_FALSE(dateFromText(QStringLiteral("1/2/26")).isValid());
    EXPECT_TRUE(dateFromText(QStringLiteral("29/02/2028")).isValid());
    EXPECT_TRUE(isEmptyDate(EmptyDate));
}

TEST(Dates, AreUnderstoodAsPeopleTypeThem) {
    const QDate today(2026, 11, 25);
    for (const auto& [typed, meant] :
         {std::pair("12/5", "12/05/2026"), std::pair("5/3/26", "05/03/2026"), std::pair("05/03/76", "05/03/2076"),
          std::pair("05/03/77", "05/03/1977"), std::pair("01/02/2031", "01/02/2031"), std::pair("12/05/", "12/05/2026"),
          std::pair("12", ""), std::pair("31/02", ""), std::pair("12/5/202", ""), std::pair("//", "")})
        EXPECT_EQ(dateText(typedDay(QString::fromLatin1(typed), today)), QString::fromLatin1(meant)) << typed;
    for (const auto& [typed, meant] :
         {std::pair("5/29", "05/2029"), std::pair("05/2029", "05/2029"), std::pair("13/29", ""), std::pair("05/", "")})
        EXPECT_EQ(monthText(typedMonth(QString::fromLatin1(typed), today)), QString::fromLatin1(meant)) << typed;
}

TEST(Dates, OfSterilisationAndExpiryAreAMonthAndAYear) {
    EXPECT_TRUE(isMonthYear(QStringLiteral("12/2030")));
    for (const char* wrong : {"13/2030", "00/2030", "1/2030", "12/30", "12/2030x", "__/____"})
        EXPECT_FALSE(isMonthYear(QString::fromUtf8(wrong))) << wrong;
}

} // namespace molven

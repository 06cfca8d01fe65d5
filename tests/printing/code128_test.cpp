#include "printing/code128.h"

#include "support/dossier.h"

#include <QRegularExpression>

namespace molven {

namespace {

struct BarsCase {
    const char* name;
    QString data;
    QList<int> bars; ///< character codes without the final blank
    QString readable;
};

QString coded(const QString& text) {
    // "\x{202}" style marks keep the cases legible: {202} stands for the character 202.
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'{') {
            result += text[i];
            continue;
        }
        const qsizetype end = text.indexOf(u'}', i);
        result += QChar(text.mid(i + 1, end - i - 1).toInt());
        i = end;
    }
    return result;
}

QList<int> barsOf(Code128Encoder& encoder, const QString& text) {
    QString data = text;
    const QString bars = encoder.encode(data, Code128Encoder::Bars);
    EXPECT_TRUE(data.isEmpty());
    EXPECT_TRUE(bars.endsWith(u' '));
    QList<int> codes;
    for (const QChar c : bars.chopped(1)) codes.append(c.unicode());
    return codes;
}

QString readableOf(const QString& text) {
    Code128Encoder encoder;
    QString data = coded(text);
    return encoder.encode(data, Code128Encoder::HumanReadable);
}

} // namespace

class Bars : public testing::TestWithParam<BarsCase> {};

TEST_P(Bars, FollowTheHandWorkedValues) {
    const BarsCase& c = GetParam();
    Code128Encoder encoder;
    EXPECT_EQ(barsOf(encoder, coded(c.data)), c.bars) << c.name;
    QString again = coded(c.data);
    const QString check = encoder.encode(again, Code128Encoder::CheckCharacter);
    EXPECT_EQ(check, QString(QChar(c.bars[c.bars.size() - 2]))) << c.name;
    QString unknownKind = coded(c.data);
    EXPECT_EQ(encoder.encode(unknownKind, 7), QString()) << c.name;
    EXPECT_EQ(readableOf(c.data), c.readable) << c.name;
}

// Check sums worked by hand: start value, then each symbol value times its place, modulo 103.
INSTANTIATE_TEST_SUITE_P(
    HandWorked, Bars,
    testing::Values(
        BarsCase{"four digits", QStringLiteral("1234"), {204, 199, 44, 66, 52, 206}, QStringLiteral("1234")},
        // 105 + 12x1 + 34x2 + 100x3 + 21x4 = 569, 569 - 5x103 = 54 -> character 86
        BarsCase{"odd digits", QStringLiteral("12345"), {205, 44, 66, 200, 53, 86, 206}, QStringLiteral("12345")},
        // 104 + 33x1 + 34x2 = 205, 205 - 103 = 102 -> character 202
        BarsCase{"letters", QStringLiteral("AB"), {204, 65, 66, 202, 206}, QStringLiteral("AB")},
        // 104 + 33x1 + 0x2 + 34x3 = 239, 239 - 206 = 33 -> 65; the blank is the character 194
        BarsCase{"blank", QStringLiteral("A B"), {204, 65, 194, 66, 65, 206}, QStringLiteral("A B")},
        // 105 + 102x1 + 100x2 + 33x3 = 506, 506 - 412 = 94 -> 126
        BarsCase{
            "bare FNC1 before a letter", QStringLiteral("{202}A"), {205, 202, 200, 65, 126, 206}, QStringLiteral("A")},
        // 105 + 102x1 + 10x2 + 100x3 + 33x4 + 34x5 + 35x6 = 1039, 1039 - 1030 = 9 -> 41
        BarsCase{"identifier",
                 QStringLiteral("{212}10ABC"),
                 {205, 202, 42, 200, 65, 66, 67, 41, 206},
                 QStringLiteral(" (10) ABC")},
        // 103 + 73x1 = 176, 176 - 103 = 73 -> 105
        BarsCase{"control character", QStringLiteral("{9}"), {203, 105, 105, 206}, QStringLiteral(" ")},
        // 103 + 100x1 - 1x2 = 201, 201 - 103 = 98 -> 198
        BarsCase{"character 31", QStringLiteral("{31}"), {203, 200, 31, 198, 206}, QStringLiteral(" ")},
        // 104 + 65x1 = 169, 169 - 103 = 66 -> 98; the accented letter is dropped
        BarsCase{"accent", QStringLiteral("a{196}"), {204, 97, 98, 206}, QStringLiteral("a")},
        // 105 + 0x1 + 0x2 = 105, 105 - 103 = 2 -> 34, in set C from five characters on only
        BarsCase{"zeros", QStringLiteral("000000"), {205, 194, 194, 194, 34, 206}, QStringLiteral("000000")}));

TEST(Readable, BracketsIdentifiersByTheirLength) {
    EXPECT_EQ(readableOf(QStringLiteral("{213}2409999")), QStringLiteral(" (240) 9999"));
    EXPECT_EQ(readableOf(QStringLiteral("{214}3103000123")), QStringLiteral(" (3103) 000123"));
    EXPECT_EQ(readableOf(QStringLiteral("{215}80005999999")), QStringLiteral(" (80005) 999999"));
    EXPECT_EQ(readableOf(QStringLiteral("{202}01034009")), QStringLiteral(" (01) 034009"));
    EXPECT_EQ(readableOf(QStringLiteral("{202}3102000123")), QStringLiteral(" (3102) 000123"));
    EXPECT_EQ(readableOf(QStringLiteral("{202}4100001")), QStringLiteral(" (410) 0001"));
    EXPECT_EQ(readableOf(QStringLiteral("{202}7003123456")), QStringLiteral(" (7003) 123456"));
    EXPECT_EQ(readableOf(QStringLiteral("{202}17301231{202}10LOT")), QStringLiteral(" (17) 301231 (10) LOT"));
    EXPECT_EQ(readableOf(QStringLiteral("AB{202}1")), QStringLiteral("AB1")) << "too near the end to be an identifier";
}

TEST(Readable, OfAnIdentifierThatIsNotANumberIsAnError) {
    Code128Encoder encoder;
    QString data = coded(QStringLiteral("{202}ABCDE"));
    EXPECT_THROW(encoder.encode(data, Code128Encoder::HumanReadable), std::invalid_argument);
}

TEST(Bars, OfAnEmptyTextReuseTheStartOfTheTextBefore) {
    Code128Encoder encoder;
    barsOf(encoder, QStringLiteral("123456"));
    EXPECT_EQ(barsOf(encoder, QString()), (QList<int>{205, 34, 206})); // 105 modulo 103 = 2
    barsOf(encoder, QStringLiteral("A"));
    EXPECT_EQ(barsOf(encoder, QString()), (QList<int>{204, 33, 206}));
    EXPECT_EQ(barsOf(encoder, coded(QStringLiteral("{196}"))), (QList<int>{204, 33, 206}));
}

} // namespace molven

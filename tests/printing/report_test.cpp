#include "printing/report.h"

#include <gtest/gtest.h>

namespace molven {

TEST(Reports, RepeatTheirHeadingOnEveryPageAndLoseNoRow) {
    Report report(QStringLiteral("LISTE"), QStringLiteral("05/03/2026"),
                  {{QStringLiteral("Code"), 1500}, {QStringLiteral("Prix"), 1500, true}});
    for (int i = 0; i < 150; ++i) {
        if (i % 50 == 0) report.group(QStringLiteral("Famille %1").arg(i / 50));
        report.row({QStringLiteral("C%1").arg(i), QStringLiteral("%1,00").arg(i)});
    }
    const PrintJob& job = report.finish(QStringLiteral("fin"));
    ASSERT_EQ(job.pages(), report.pages());
    ASSERT_GE(job.pages(), 3);
    for (int page = 1; page <= job.pages(); ++page)
        EXPECT_TRUE(job.contains(QStringLiteral("Edition du 05/03/2026   Page : %1").arg(page)));
    for (int i = 0; i < 150; ++i) EXPECT_TRUE(job.contains(QStringLiteral("C%1").arg(i))) << i;
    EXPECT_TRUE(job.contains(QStringLiteral("Famille 2")));
    for (const PrintedText& piece : job.pieces()) EXPECT_LE(piece.y, 16270 - 300) << "below the paper";
}

TEST(Reports, AlignNumbersAtTheRightAndCutWhatDoesNotFit) {
    Report report(QStringLiteral("LISTE"), {}, {{QStringLiteral("Nom"), 1000}, {QStringLiteral("Prix"), 1500, true}});
    report.row({QStringLiteral("UN NOM BEAUCOUP TROP LONG POUR SA COLONNE"), QStringLiteral("1,00")});
    report.row({QStringLiteral("X"), QStringLiteral("1000,00")});
    int rights[2] = {}, found = 0;
    PrintJob ruler(QStringLiteral("mesure"));
    ruler.setFont(QStringLiteral("Arial Narrow"), 9);
    for (const PrintedText& piece : report.finish({}).pieces()) {
        if (piece.text.endsWith(QStringLiteral(",00"))) rights[found++] = piece.x + ruler.textWidth(piece.text);
        if (piece.text.startsWith(QStringLiteral("UN NOM"))) {
            EXPECT_TRUE(piece.text.endsWith(QStringLiteral("...")));
            EXPECT_LE(ruler.textWidth(piece.text), 1000);
        }
    }
    EXPECT_EQ(found, 2);
    EXPECT_EQ(rights[0], rights[1]);
}

} // namespace molven

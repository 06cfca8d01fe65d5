#include "printing/report.h"

#include "printing/letter.h"
#include "support/paper.h"

#include <gtest/gtest.h>

namespace molven {

using test::expectNoOverlap, test::widthOf;

namespace {

const QString Company = QStringLiteral("L'ESSAI");
const QString Day = QStringLiteral("05/03/2026");

void expectNothingBeyondThePaper(const PrintJob& job) {
    for (const PrintedText& piece : job.pieces()) {
        EXPECT_LE(piece.x + widthOf(piece), job.width() + 5) << piece.text.toStdString();
        EXPECT_LE(piece.y + piece.lineStep * piece.lines.size(), job.height() - 200) << piece.text.toStdString();
        EXPECT_GE(piece.x, 800) << "no room to file";
    }
}

} // namespace

TEST(Reports, SayOnEveryPageWhoseTheyAreWhatTheyHoldAndWhichPageItIs) {
    Report report(QStringLiteral("LISTE"), {{QStringLiteral("Code")}, {QStringLiteral("Prix"), true}});
    report.say(QStringLiteral("Sélection : tout"));
    for (int i = 0; i < 150; ++i) {
        if (i % 50 == 0) report.group(QStringLiteral("Famille %1").arg(i / 50), QStringLiteral("NOM"));
        report.row({QStringLiteral("C%1").arg(i), QStringLiteral("%1,00").arg(i)});
    }
    report.count();
    const PrintJob job = report.print(Company, Day);
    ASSERT_GE(job.pages(), 3);
    for (int page = 1; page <= job.pages(); ++page)
        EXPECT_TRUE(job.contains(QStringLiteral("Edition du 05/03/2026   Page : %1").arg(page)));
    const auto times = [&job](const QString& text) {
        return std::count_if(job.pieces().begin(), job.pieces().end(),
                             [&text](const PrintedText& piece) { return piece.text == text; });
    };
    for (const QString& text : {Company, QStringLiteral("LISTE"), QStringLiteral("Sélection : tout"),
                                QStringLiteral("Code"), QStringLiteral(" / %1").arg(job.pages())})
        EXPECT_EQ(times(text), job.pages()) << text.toStdString();
    for (int i = 0; i < 150; ++i) EXPECT_EQ(times(QStringLiteral("C%1").arg(i)), 1) << i;
    EXPECT_EQ(times(QStringLiteral("Famille 1")), 2) << "a group goes on over the page";
    EXPECT_TRUE(job.contains(QStringLiteral("Nbre sélection : 150 / nbre de pages : %1").arg(job.pages())));
    expectNothingBeyondThePaper(job);
}

/// How wide the texts of a list are, and the paper it wants.
struct WidthCase {
    const char* name;
    int columns, letters;
    Orientation paper;
    bool isBroken; ///< cells take several lines
};

class ReportWidths : public testing::TestWithParam<WidthCase> {};

TEST_P(ReportWidths, ShowEveryCellWhole) {
    const WidthCase& one = GetParam();
    QList<PaperColumn> columns{{QStringLiteral("N° Immatriculation")}};
    QStringList cells{QStringLiteral("26030001")};
    for (int i = 0; i < one.columns; ++i) {
        columns.append({QStringLiteral("Colonne %1").arg(i), i % 3 == 1});
        cells.append((QStringLiteral("TAILLE %1 ").arg(i) + QStringLiteral("MOT ").repeated(99)).left(one.letters));
    }
    Report report(QStringLiteral("LISTE"), columns);
    for (int i = 0; i < 60; ++i) report.row(cells);
    const PrintJob job = report.print(Company, Day);
    EXPECT_EQ(job.width() == PrintJob::LongSide, one.paper == Orientation::Lying);
    bool isBroken = false;
    for (const PrintedText& piece : job.pieces()) {
        isBroken = isBroken || !piece.lines.isEmpty();
        EXPECT_TRUE(piece.lines.isEmpty() || piece.lines.join(u' ') == piece.text.trimmed())
            << piece.text.toStdString();
    }
    EXPECT_EQ(isBroken, one.isBroken);
    for (const QString& cell : cells) EXPECT_TRUE(job.contains(cell)) << cell.toStdString();
    expectNothingBeyondThePaper(job);
    expectNoOverlap(job);
}

INSTANTIATE_TEST_SUITE_P(Lists, ReportWidths,
                         testing::Values(WidthCase{"narrow", 2, 20, Orientation::Upright, false},
                                         WidthCase{"wide", 4, 32, Orientation::Lying, false},
                                         WidthCase{"widest", 12, 45, Orientation::Lying, true}),
                         [](const auto& chosen) { return chosen.param.name; });

TEST(Reports, AlignNumbersAtTheRight) {
    Report report(QStringLiteral("LISTE"), {{QStringLiteral("Nom")}, {QStringLiteral("Prix"), true}});
    report.row({QStringLiteral("A"), QStringLiteral("1,00")});
    report.row({QStringLiteral("B"), QStringLiteral("1000,00")});
    QList<int> rights;
    const PrintJob job = report.print(Company, Day);
    for (const PrintedText& piece : job.pieces())
        if (piece.text.endsWith(QStringLiteral(",00"))) rights.append(piece.x + widthOf(piece));
    ASSERT_EQ(rights.size(), 2);
    EXPECT_NEAR(rights[0], rights[1], 1);
}

TEST(Letters, KeepTheirSlipWholeAndEveryRowOfALongTable) {
    for (const int rows : {1, 20, 30, 90}) {
        Letter letter;
        letter.sender = Company;
        letter.senderAddress = {QStringLiteral("12 RUE DES LILAS"), QStringLiteral("69003 LYON")};
        letter.footer = QStringLiteral("SARL");
        letter.address = {QStringLiteral("CLINIQUE"), QStringLiteral("13000 MARSEILLE")};
        letter.subject = QStringLiteral("RAPPEL DU LOT L1");
        letter.columns = {{QStringLiteral("Immatriculation")}, {QStringLiteral("Désignation")}};
        for (int i = 0; i < rows; ++i)
            letter.rows.append({QStringLiteral("U%1").arg(i), QStringLiteral("TIGE TAILLE 13 ").repeated(9)});
        letter.slipTitle = QStringLiteral("ACCUSE DE RECEPTION");
        letter.slip = {QStringLiteral("Nom :"), QStringLiteral("Signature :")};
        const PrintJob job = printed(letter);
        int titlePage = -1, signaturePage = -1;
        for (const PrintedText& piece : job.pieces()) {
            if (piece.text == letter.slipTitle) titlePage = piece.page;
            if (piece.text == letter.slip.last()) signaturePage = piece.page;
        }
        EXPECT_EQ(titlePage, signaturePage) << rows;
        EXPECT_EQ(titlePage, job.pages() - 1) << rows;
        EXPECT_TRUE(job.contains(QStringLiteral("U%1").arg(rows - 1)));
        EXPECT_TRUE(job.contains(QStringLiteral("69003 LYON")));
        expectNothingBeyondThePaper(job);
    }
}

} // namespace molven

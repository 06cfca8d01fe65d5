#include "support/dossier.h"

#include "printing/barcode_font.h"
#include "printing/label_page.h"
#include "reference/articles.h"
#include "reference/tariff_tables.h"
#include "stock/labels.h"
#include "stock/units.h"
#include "support/paper.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

class LabelFiles : public testing::Test {
protected:
    explicit LabelFiles(const QString& company = QStringLiteral("CE"))
        : dossier(company),
          molven(workspace.open(dossier.session.molven())),
          tri(workspace.open(dossier.session.tri())) {}

    QString select(const char* first, const char* last, const QString& state = state::InStock) {
        return refusalOf([&] {
            const labels::NumberRange range(QString::fromLatin1(first), QString::fromLatin1(last),
                                            QStringLiteral("txtnumdeb"));
            found = labels::select(molven, range, state).count();
        });
    }
    Record labelOf(const QString& unit) {
        labels::fill(molven, tri, dossier.session.rules(), molven.select(strproduit, strproduit.imm_art == unit));
        return tri.find(etiq, {}).value();
    }

    Dossier dossier;
    Workspace workspace;
    Database molven, tri;
    qint64 found = 0;
};

class LabelFilesOfMd : public LabelFiles {
protected:
    LabelFilesOfMd() : LabelFiles(QStringLiteral("MD")) {}
};

} // namespace

TEST_F(LabelFiles, AreSelectedByTheNumbersOfTheLastDocument) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    const QString invoice = dossier.document(QStringLiteral("FAC"), {units[0], units[1]});
    ASSERT_EQ(invoice, QStringLiteral("000001"));
    EXPECT_EQ(select("", ""), QStringLiteral("Faire une sélection"));
    EXPECT_EQ(select("000120", "100"), QStringLiteral("N° Fin < N° Début ???"));
    EXPECT_EQ(select("1", ""), QStringLiteral("Aucun produit correspondant à ce critère"));
    EXPECT_EQ(select("", "1", state::Sold), QStringLiteral("(accepté)"));
    EXPECT_EQ(found, 2);
}

TEST_F(LabelFiles, ReplaceTheLabelsThatWaited) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    labels::fill(molven, tri, dossier.session.rules(), molven.select(strproduit));
    labelOf(units[2]);
    EXPECT_EQ(tri.count(etiq), 1);
}

TEST_F(LabelFiles, TellTheUnitItsReimbursementAndItsPrice) {
    const QString unit = dossier.receive(QStringLiteral("CUP"), 1).first();
    const Record label = labelOf(unit);
    EXPECT_EQ(label[etiq.e_imm], unit);
    EXPECT_EQ(label[etiq.e_lpp] + u'|' + label[etiq.e_llpp], QStringLiteral("3100001|HANCHE, COTYLE"));
    EXPECT_EQ(label[etiq.e_euro], QStringLiteral("105,50"));
    molven.update(strproduit, {{strproduit.pro_vte, QStringLiteral("90")}}, {}); // sold with a discount, without VAT
    EXPECT_EQ(labelOf(unit)[etiq.e_euro], QStringLiteral("94,95"));
    molven.update(strproduit, {{strproduit.pro_tar, QStringLiteral("T")}}, {});
    EXPECT_EQ(labelOf(unit)[etiq.e_euro], QStringLiteral("90,00"));
    EXPECT_EQ(label[etiq.f_pie] + u'|' + label[etiq.f_ino] + u'|' + label[etiq.n_lot], QStringLiteral("001|C1|LOT-1"));
    EXPECT_EQ(label[etiq.e_res], QStringLiteral("EGAL AU PRIX DE VENTE TTC"));
    EXPECT_EQ(label[etiq.e_ori], QStringLiteral("ORIGINE NI ANIMALE NI HUMAINE"));
}

TEST_F(LabelFiles, TakeSeveralLppCodesFromTheirTable) {
    const QString unit = dossier.receive(QStringLiteral("GRAFT"), 1).first();
    molven.update(strproduit, {{strproduit.pro_lpp, SeveralLpp}}, {});
    Record several(strartlpp);
    several[strartlpp.lpp_ref] = QStringLiteral("GRAFT");
    several[strartlpp.lpp_1] = QStringLiteral("3199999"); // without a label
    several[strartlpp.lpp_2] = QStringLiteral("3100001");
    molven.insert(several);
    molven.update(strarticle, {{strarticle.art_res, QStringLiteral("123.4")}},
                  strarticle.art_ref == QStringLiteral("GRAFT"));
    const Record label = labelOf(unit);
    EXPECT_EQ(label[etiq.e_lpp] + u'|' + label[etiq.e_llpp], QStringLiteral("3199999|"));
    EXPECT_EQ(label[etiq.e_lpp2] + u'|' + label[etiq.e_llpp2], QStringLiteral("3100001|HANCHE, COTYLE"));
    EXPECT_EQ(label[etiq.e_ori], QStringLiteral("ORIGINE HUMAINE"));
    EXPECT_EQ(label[etiq.e_res], QStringLiteral("123,40 EUR"));
    EXPECT_EQ(label[etiq.g_don] + label[etiq.g_tis], QStringLiteral("C2C1"));
}

TEST_F(LabelFilesOfMd, ShowTheSuppliersOwnNumbersWhenThereAreSome) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    molven.update(strproduit,
                  {{strproduit.fou_imm, QStringLiteral("SN-7")}, {strproduit.fou_ref, QStringLiteral("REF-F")}},
                  strproduit.imm_art == units[0]);
    EXPECT_EQ(labelOf(units[0])[etiq.e_imm], QStringLiteral("SN-7"));
    EXPECT_EQ(labelOf(units[0])[etiq.e_ref], QStringLiteral("REF-F"));
    EXPECT_EQ(labelOf(units[1])[etiq.e_imm], units[1]);
}

namespace {

PrintedText pieceOf(const PrintJob& job, const QString& text, int skip = 0) {
    for (const PrintedText& piece : job.pieces())
        if (piece.text == text && skip-- == 0) return piece;
    ADD_FAILURE() << text.toStdString() << " is not printed";
    return {};
}

ProductLabel sample() {
    return {QStringLiteral("26030001"),
            QStringLiteral("HIP"),
            {},
            QStringLiteral("3100001"),
            QStringLiteral("HANCHE"),
            QStringLiteral("ORIGINE HUMAINE"),
            QStringLiteral("123,45 EUR"),
            Decimal::parse(QStringLiteral("105.50"))};
}

} // namespace

TEST(LabelPages, PutEveryLineAtItsPlaceInTwips) {
    PrintJob job(QStringLiteral("Etiquettes"));
    label_page::print(job, {sample(), sample()}, QStringLiteral("Courier New"));
    const PrintedText code = pieceOf(job, QStringLiteral("3100001"));
    EXPECT_EQ(code.x, 2100);
    EXPECT_EQ(code.y, 0);
    EXPECT_EQ(code.font.pointSize(), 12);
    const std::pair<const char*, int> lines[] = {{"HANCHE", 500},
                                                 {"Référence : HIP", 700},
                                                 {"Immatriculation : 26030001", 1100},
                                                 {"ORIGINE HUMAINE", 1500},
                                                 {"Tarif de Responsabilité :   123,45 €", 1700},
                                                 {"Prix de Vente TTC(Tva 5.5%) :   105,50 €", 1900}};
    for (const auto& [text, y] : lines) {
        EXPECT_EQ(pieceOf(job, QString::fromUtf8(text)).y, y) << text;
        EXPECT_EQ(pieceOf(job, QString::fromUtf8(text), 1).y, y + 3470) << text;
    }
    const PrintedText number = pieceOf(job, QStringLiteral("Immatriculation : 26030001"));
    EXPECT_TRUE(number.font.bold());
    PrintJob ruler(QStringLiteral("mesure"));
    ruler.setFont(QStringLiteral("Arial Narrow"), 12, true);
    EXPECT_EQ(number.x, (4350 - ruler.textWidth(number.text)) / 3 + 500);
    EXPECT_FALSE(pieceOf(job, QStringLiteral("Référence : HIP")).font.bold());
}

TEST(LabelPages, ShowATipsCodeInPlaceOfBarsAndWordsOnALineOfTheirOwn) {
    ProductLabel label = sample();
    label.tips = QStringLiteral("303B04");
    label.liabilityTariff = QStringLiteral("EGAL AU PRIX DE VENTE TTC");
    PrintJob job(QStringLiteral("Etiquettes"));
    label_page::print(job, {label}, QStringLiteral("Courier New"));
    EXPECT_EQ(pieceOf(job, QStringLiteral("Code T.I.P.S. : 303B04")).y, 0);
    EXPECT_FALSE(job.contains(QStringLiteral("3100001")));
    EXPECT_EQ(pieceOf(job, QStringLiteral("Référence : HIP")).y, 200);
    EXPECT_EQ(pieceOf(job, QStringLiteral("EGAL AU PRIX DE VENTE TTC")).y,
              pieceOf(job, QStringLiteral("Tarif de Responsabilité :   ")).y + 200);
}

TEST(LabelPages, BreakALongCaptionAtABlankAndStartAPageWhenFull) {
    const QString caption = QStringLiteral("IMPLANT ARTICULAIRE DE HANCHE, COTYLE A DOUBLE MOBILITE CIMENTE");
    const QStringList lines = label_page::captionLines(caption);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.join(u' '), caption);
    EXPECT_LE(lines[0].size(), 40);
    EXPECT_EQ(label_page::captionLines(QString(40, u'x')).size(), 1);
    EXPECT_EQ(label_page::captionLines(QString(90, u'x')).join(QString()), QString(90, u'x'));
    PrintJob job(QStringLiteral("Etiquettes"));
    label_page::print(job, QList<ProductLabel>(9, sample()), QStringLiteral("Courier New"));
    EXPECT_EQ(job.pages(), 3);
}

TEST(LabelPages, KeepTheirHeightWithEveryCodeUnderItsOwnCaption) {
    ProductLabel label = sample();
    label.lppLabel = QStringLiteral("IMPLANT ARTICULAIRE DE HANCHE, COTYLE A DOUBLE MOBILITE CIMENTE");
    label.liabilityTariff = QStringLiteral("EGAL AU PRIX DE VENTE TTC");
    label.furtherLpp = {QStringLiteral("3100002 ") + label.lppLabel, QStringLiteral("3100003 TIGE")};
    PrintJob job(QStringLiteral("Etiquettes"));
    label_page::print(job, {label}, QStringLiteral("Courier New"));
    EXPECT_GT(pieceOf(job, QStringLiteral("LPP : 3100003 TIGE")).y,
              pieceOf(job, label_page::captionLines(label.lppLabel).last()).y);
    for (const PrintedText& piece : job.pieces())
        EXPECT_LE(piece.y + 140, label_page::LabelStep) << "on the next label";
}

TEST(LabelPages, FillAnA4SheetColumnByColumn) {
    PrintJob job(QStringLiteral("Etiquettes"));
    label_page::print(job, QList<ProductLabel>(9, sample()), QStringLiteral("Courier New"), label_page::Paper::Sheet);
    EXPECT_EQ(job.pages(), 2);
    const PrintedText first = pieceOf(job, QStringLiteral("3100001")),
                      fifth = pieceOf(job, QStringLiteral("3100001"), 4);
    EXPECT_EQ(fifth.y, first.y);
    EXPECT_EQ(fifth.x, first.x + label_page::ColumnStep);
}

class DrawnBars : public testing::TestWithParam<const char*> {};

TEST_P(DrawnBars, AreReadBackByAScanner) {
    ProductLabel label = sample();
    label.lpp = QString::fromLatin1(GetParam());
    PrintJob job(QStringLiteral("Etiquettes"));
    label_page::print(job, {label}, BarcodeFont::Drawn);
    EXPECT_FALSE(job.bars().isEmpty());
    EXPECT_EQ(test::scanned(job), QStringList(QString::fromLatin1(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Code128, DrawnBars,
                         testing::Values("3100001", "1234", "12345", "ABC-12", "A1B2C3", "99999999", "Lot 7/b"));

} // namespace molven

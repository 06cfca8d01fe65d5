#include "sales/papers.h"

#include "data/format.h"
#include "printing/barcode_font.h"
#include "reference/article_tables.h"
#include "reference/parties.h"
#include "reference/seller.h"
#include "sales/document_amounts.h"
#include "support/paper.h"
#include "support/sales.h"

#include <random>

namespace molven {

namespace {

const QString Money = QStringLiteral("### ### ##0.00");

class Papers : public test::Sales {
protected:
    using Sales::Sales;

    PrintJob printed(const char* mode, const QString& number, const char* screen = "T_docedt") {
        SalesBook opened = book(mode);
        return papers::print(opened, papers::select(opened, {{}, number, number, {}}),
                             papers::styleOf(QString::fromLatin1(screen)), BarcodeFont::Drawn);
    }
    void changeClient(const std::function<void(Record&)>& change) {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        const Record before = parties::findClient(molven, QStringLiteral("1")).value();
        Record client = before;
        change(client);
        parties::saveClient(molven, client, before);
    }
    /// An invoice of many lines; its units come first.
    QString longInvoice(int units, int others) {
        SalesBook opened = book("FAC");
        const Record header = test::newDocument(opened);
        QList<document_lines::Draft> drafts;
        for (const QString& unit : dossier.receive(QStringLiteral("HIP"), units))
            drafts.append(test::lineOfUnit(opened, header, unit));
        for (int i = 0; i < others; ++i)
            drafts.append(test::lineOfArticle(opened, header, QStringLiteral("FEE"), i % 3 + 1));
        document_lines::add(opened, header, drafts);
        return header[strface.fac_no];
    }
};

/// The page that holds each piece of that text.
QList<int> pagesOf(const PrintJob& job, const QString& text) {
    QList<int> pages;
    for (const PrintedText& piece : job.pieces())
        if (piece.text == text) pages.append(piece.page);
    return pages;
}

/// What stands at the right of a caption, on its line.
QString beside(const PrintJob& job, const QString& caption, int page) {
    for (const PrintedText& piece : job.pieces())
        if (piece.text == caption && piece.page == page)
            for (const PrintedText& value : job.pieces())
                if (value.page == page && value.y == piece.y && value.x > piece.x) return value.text;
    return {};
}

void expectOnThePaper(const PrintJob& job) {
    for (const PrintedText& piece : job.pieces()) {
        EXPECT_LE(piece.x + test::widthOf(piece), job.width()) << piece.text.toStdString();
        EXPECT_LE(piece.y + piece.lineStep * piece.lines.size(), job.height()) << piece.text.toStdString();
    }
    test::expectNoOverlap(job);
    for (const char* title : {"Immat.", "Péremption", "Qté", "P.U. HT", "Rem. %", "Montant HT", "TVA"})
        for (const PrintedText& piece : job.pieces())
            if (piece.text == QString::fromUtf8(title)) {
                EXPECT_TRUE(piece.lines.isEmpty()) << title << " is broken";
            }
}

} // namespace

TEST_F(Papers, OfManyLinesBreakBetweenThemAndCarryTheirSum) {
    const PrintJob job = printed("FAC", longInvoice(200, 100), "T_docedt3");
    ASSERT_GT(job.pages(), 8);
    expectOnThePaper(job);
    for (int page = 0; page + 1 < job.pages(); ++page) {
        const QString carried = beside(job, QStringLiteral("À reporter"), page);
        EXPECT_FALSE(carried.isEmpty());
        EXPECT_EQ(beside(job, QStringLiteral("Report"), page + 1), carried);
        EXPECT_TRUE(job.contains(QStringLiteral("Page %1 / %2").arg(page + 1).arg(job.pages())));
    }
    // A unit and what identifies it follow each other on one page.
    const QList<PrintedText>& pieces = job.pieces();
    int units = 0;
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        if (pieces[i].text != u"N° Lot : LOT-1") continue;
        ++units;
        const auto before = std::find_if(std::make_reverse_iterator(pieces.begin() + i), pieces.rend(),
                                         [](const PrintedText& piece) { return piece.text == u"HIP"; });
        EXPECT_EQ(before->page, pieces[i].page);
        EXPECT_LT(pieces[i].y - before->y, 500);
    }
    EXPECT_EQ(units, 200);
    EXPECT_EQ(pagesOf(job, QStringLiteral("Net à payer EUR")), QList<int>{job.pages() - 1});
    EXPECT_EQ(pagesOf(job, QStringLiteral("ARTICLE FEE")).last(), job.pages() - 1) << "totals alone on a page";
}

/// Whatever the number of lines, nothing runs over the foot of a page.
TEST_F(Papers, OfAnyLengthStayAboveTheFoot) {
    for (const int lines : {1, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33}) {
        const PrintJob job = printed("FAC", longInvoice(1, lines - 1));
        const QList<int> pages = pagesOf(job, QStringLiteral("Net à payer EUR"));
        ASSERT_EQ(pages.size(), 1);
        int top = job.height(), bottom = 0;
        for (const PrintedText& piece : job.pieces())
            if (piece.page == pages.first()) {
                if (piece.text.startsWith(u"Pas d'escompte")) top = piece.y;
                if (piece.text == u"BIC" || piece.text == u"Règlement") bottom = std::max(bottom, piece.y);
            }
        EXPECT_LT(bottom + 200, top) << lines << " lines";
        EXPECT_FALSE(pagesOf(job, QStringLiteral("P.U. HT")).isEmpty());
    }
}

TEST_F(Papers, StateTheAmountsOfTheRecordToTheCent) {
    SalesBook opened = book("FAC");
    Record header = test::newDocument(opened);
    QList<document_lines::Draft> drafts;
    std::mt19937 dice(7);
    for (int i = 0; i < 12; ++i) {
        document_lines::Draft draft = test::lineOfArticle(opened, header, QStringLiteral("FEE"), 1 + i % 3);
        draft.line[strfacl.fac_tva] = QString::number(1 + i % 4);
        draft.line[strfacl.fac_px] = Decimal(static_cast<int>(dice() % 100'000)) / Decimal(100);
        draft.line[strfacl.fac_remx] = Decimal(i % 2 * 7);
        draft.withoutVat = i % 5 != 0;
        drafts.append(draft);
    }
    document_lines::add(opened, header, drafts);
    header = documents::current(opened, header);
    const Record read = header;
    header[strface.fac_rem] = *Decimal::parse(QStringLiteral("3,5"));
    header[strface.fac_esc] = Decimal(2);
    header[strface.fac_port] = *Decimal::parse(QStringLiteral("12,30"));
    header[strface.fac_exo] = Decimal(40);
    header[strface.fac_acpt] = Decimal(100);
    const Record stored = documents::changeFooter(opened, header, read);

    const DocumentAmounts amounts = amountsOf(opened.molven, opened.vente, opened.kind(), stored);
    EXPECT_EQ(amounts.lines - amounts.discount - amounts.settlement + amounts.carriage + amounts.exempt,
              stored[strface.fac_ht]);
    Decimal bases = amounts.exempt, vat;
    for (const DocumentAmounts::Vat& one : amounts.vat) bases += one.base, vat += one.amount;
    EXPECT_EQ(bases, stored[strface.fac_ht]);
    EXPECT_EQ(vat, stored[strface.fac_ttc] - stored[strface.fac_ht]);

    const PrintJob job = printed("FAC", stored[strface.fac_no]);
    const auto printedBeside = [&job](const char* caption) { return beside(job, QString::fromUtf8(caption), 0); };
    EXPECT_EQ(printedBeside("Net à payer EUR"), format(stored[strface.fac_ffa], Money));
    EXPECT_EQ(printedBeside("Acompte"), QStringLiteral("-100,00"));
    EXPECT_EQ(printedBeside("Total HT"), format(stored[strface.fac_ht], Money));
    EXPECT_EQ(printedBeside("Remise 3,5 %"), format(-amounts.discount, Money));
    EXPECT_EQ(printedBeside("Port HT"), QStringLiteral("12,30"));
    EXPECT_TRUE(job.contains(QStringLiteral("exonéré")));
    expectOnThePaper(job);
}

TEST_F(Papers, OfANoteOnAGroupedInvoiceGoWithoutPricesUnlessStatementsAreSent) {
    const QString note = dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    EXPECT_TRUE(printed("LIV", note).contains(QStringLiteral("P.U. HT")));
    changeClient([](Record& client) { client[strclient.clt_rbl] = QStringLiteral("O"); });
    const PrintJob without = printed("LIV", note);
    EXPECT_FALSE(without.contains(QStringLiteral("P.U. HT")));
    EXPECT_EQ(beside(without, QStringLiteral("Quantité totale"), 0), QStringLiteral("1"));
    changeClient([](Record& client) { client[strclient.clt_edtr] = QStringLiteral("O"); });
    EXPECT_TRUE(printed("LIV", note).contains(QStringLiteral("P.U. HT")));
}

TEST_F(Papers, SayWhoSellsAndWhatTheLawAsks) {
    {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        const Record before = seller::read(molven);
        Record identity = before;
        identity[stremetteur.emt_siret] = QStringLiteral("898 123 450 00014");
        identity[stremetteur.emt_tva] = QStringLiteral("FR04 898123450");
        identity[stremetteur.emt_iban] = QStringLiteral("FR76 1999 9000 0100 0001 2345 602");
        seller::save(molven, identity, before);
    }
    changeClient([](Record& client) {
        client[strclient.clt_fac1] = QStringLiteral("SERVICE COMPTABLE");
        client[strclient.clt_fac5] = QStringLiteral("75000 PARIS");
        client[strclient.clt_pays] = QStringLiteral("BE");
    });
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    const QString invoice = dossier.document(QStringLiteral("FAC"), units);
    const PrintJob job = printed("FAC", invoice);
    for (const char* text : {"SOCIETE D'ESSAI - SIREN 898 123 450 - SIRET 898 123 450 00014 - N° TVA FR04898123450",
                             "FR76 1999 9000 0100 0001 2345 602", "SERVICE COMPTABLE", "BELGIQUE",
                             "Indemnité forfaitaire pour frais de recouvrement en cas de retard de paiement : 40 €",
                             "Pénalités de retard : trois fois le taux d'intérêt légal, exigibles sans rappel"})
        EXPECT_TRUE(job.contains(QString::fromUtf8(text))) << text;
    // The credit note names the document it takes back, and asks for no payment.
    const PrintJob credit = printed("AVO", dossier.document(QStringLiteral("AVO"), units));
    EXPECT_TRUE(credit.contains(QStringLiteral("Repris du document n° ") + invoice));
    EXPECT_TRUE(credit.contains(QStringLiteral("Net de l'avoir EUR")));
    EXPECT_FALSE(credit.contains(QStringLiteral("IBAN")));
}

TEST_F(Papers, OfForeignClientsBearTheEnglishLabel) {
    {
        Workspace workspace;
        workspace.open(dossier.session.molven())
            .update(strarticle, {{strarticle.art_ang, QStringLiteral("FEMORAL STEM")}},
                    strarticle.art_ref == QStringLiteral("HIP"));
    }
    const QString note = dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    EXPECT_FALSE(printed("LIV", note).contains(QStringLiteral("FEMORAL STEM")));
    changeClient([](Record& client) { client[strclient.clt_pays] = QStringLiteral("be"); });
    EXPECT_TRUE(printed("LIV", note).contains(QStringLiteral("FEMORAL STEM")));
}

TEST_F(Papers, WithBarsAreReadByAScanner) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const PrintJob job = printed("LIV", dossier.document(QStringLiteral("LIV"), units), "T_docbarre");
    const QStringList codes = test::scanned(job);
    for (const QString& code : units + QStringList{QStringLiteral("3100001")})
        EXPECT_TRUE(codes.contains(code)) << code.toStdString() << " in " << codes.join(u' ').toStdString();
    EXPECT_EQ(codes.size(), 3);
}

TEST_F(Papers, AreFoundInTheArchiveAsWell) {
    const QString note = dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    SalesBook opened = book("LIV");
    for (const Table* table : QList<const Table*>{&strlive, &strlivl}) {
        for (const Record& record : opened.vente.select(*table)) opened.historic.insert(record);
        opened.vente.remove(*table);
    }
    EXPECT_TRUE(printed("LIV", note).contains(QStringLiteral("N° Lot : LOT-1")));
    EXPECT_EQ(test::refusalOf([&] {
                  papers::select(opened, {QStringLiteral("1999"), {}, {}, {}});
              }),
              QStringLiteral("Aucun document correspondant à ce critère"));
}

} // namespace molven

#include "support/sales.h"

#include "data/clock.h"
#include "data/dates.h"
#include "reference/articles.h"
#include "reference/parameter_tables.h"
#include "sales/numbering.h"
#include "sales/totals.h"

namespace molven {

using test::lineOfArticle;
using test::newDocument;
using test::refusalOf;

namespace {

Decimal amountOf(const char* text) { return Decimal::fromText(QString::fromLatin1(text)); }

class SalesLimits : public test::Sales {
protected:
    ~SalesLimits() override { Clock::set({}); }
};

/// An amount typed into a box and what the rule says.
struct Amount {
    const char* field;
    const char* value;
    const char* said;
};

} // namespace

class LineAmounts : public SalesLimits, public testing::WithParamInterface<Amount> {};

TEST_P(LineAmounts, StayWithinWhatTheBoxesShow) {
    SalesBook notes = book("LIV");
    const Record header = newDocument(notes);
    document_lines::Draft draft = lineOfArticle(notes, header, QStringLiteral("FEE"));
    document_lines::add(notes, header, {draft});
    const Record read = documents::lines(notes, header).record();
    Record line = read;
    const QString field = QString::fromLatin1(GetParam().field);
    draft.line.set(*strlivl.field(field), QString::fromLatin1(GetParam().value));
    line.set(*strlivl.field(field), QString::fromLatin1(GetParam().value));
    EXPECT_EQ(refusalOf([&] { document_lines::change(notes, header, line, read); }).toStdString(), GetParam().said);
    EXPECT_EQ(refusalOf([&] { document_lines::add(notes, header, {draft}); }).toStdString(), GetParam().said);
}

INSTANTIATE_TEST_SUITE_P(
    Typed, LineAmounts,
    testing::Values(Amount{"fac_remx", "-1", "Remise incorrecte"}, Amount{"fac_remx", "100.01", "Remise incorrecte"},
                    Amount{"fac_remx", "100", "(accepté)"}, Amount{"fac_px", "-0.01", "Prix incorrect"},
                    Amount{"fac_px", "1000000", "Prix incorrect"}, Amount{"fac_px", "999999.99", "(accepté)"},
                    Amount{"fac_qte", "0", "Quantité incorrecte"}, Amount{"fac_qte", "0.001", "Quantité incorrecte"},
                    Amount{"fac_qte", "100000", "Quantité incorrecte"}));

class FooterAmounts : public SalesLimits, public testing::WithParamInterface<Amount> {};

TEST_P(FooterAmounts, StayWithinTheDocument) {
    SalesBook invoices = book("FAC");
    const Record header = newDocument(invoices);
    document_lines::add(invoices, header, {lineOfArticle(invoices, header, QStringLiteral("FEE"))});
    const Record read = documents::current(invoices, header);
    Record footer = read;
    footer.set(*strface.field(QString::fromLatin1(GetParam().field)), QString::fromLatin1(GetParam().value));
    EXPECT_EQ(refusalOf([&] { documents::changeFooter(invoices, footer, read); }).toStdString(), GetParam().said);
}

INSTANTIATE_TEST_SUITE_P(
    Typed, FooterAmounts,
    testing::Values(Amount{"fac_rem", "101", "Remise incorrecte"}, Amount{"fac_esc", "-1", "Remise incorrecte"},
                    Amount{"fac_port", "-5", "Montant incorrect"}, Amount{"fac_exo", "1000000", "Montant incorrect"},
                    Amount{"fac_acpt", "-1", "Montant incorrect"}, Amount{"fac_acpt", "94.95", "(accepté)"},
                    Amount{"fac_acpt", "94.96", "Acompte supérieur au total du document"}));

TEST_F(SalesLimits, KeepTheDownPaymentWithinTheTotalWhenLinesChange) {
    SalesBook invoices = book("FAC");
    const Record header = newDocument(invoices);
    document_lines::add(invoices, header, {lineOfArticle(invoices, header, QStringLiteral("FEE"))});
    const Record read = documents::current(invoices, header);
    Record footer = read;
    footer[strface.fac_acpt] = Decimal(50);
    documents::changeFooter(invoices, footer, read);
    const Record line = documents::lines(invoices, header).record();
    Record cheaper = line;
    cheaper[strfacl.fac_px] = Decimal(10);
    const QString told = QStringLiteral("Acompte supérieur au total du document");
    EXPECT_EQ(refusalOf([&] { document_lines::change(invoices, header, cheaper, line); }), told);
    EXPECT_EQ(refusalOf([&] { document_lines::remove(invoices, header, line); }), told);
    EXPECT_EQ(documents::lines(invoices, header).record(), line);
}

TEST_F(SalesLimits, TakeLine996AndRefuseTheNextAndFillFreeNumbers) {
    SalesBook notes = book("LIV");
    const Record header = newDocument(notes);
    const auto addAt = [&](int from) {
        return refusalOf(
            [&] { document_lines::add(notes, header, {lineOfArticle(notes, header, QStringLiteral("FEE"))}, from); });
    };
    EXPECT_EQ(addAt(996), QStringLiteral("(accepté)"));
    EXPECT_EQ(numbering::nextLine(notes.vente, strlivl, header[strlive.fac_aa], header[strlive.fac_no]), 997)
        << "the refusal comes with that line only";
    EXPECT_EQ(addAt(0), QStringLiteral("Document plein - ligne non crée"));
    EXPECT_EQ(addAt(500), QStringLiteral("(accepté)"));
    EXPECT_EQ(addAt(500), QStringLiteral("Cette ligne existe déjà"));
    for (const char* wrong : {"0", "abc", "-3", "1,5"})
        EXPECT_EQ(refusalOf([&] { numbering::typedLine(QString::fromLatin1(wrong)); }),
                  QStringLiteral("N° ligne incorrect"))
            << wrong;
    EXPECT_EQ(refusalOf([] { numbering::typedLine(QStringLiteral(" ")); }), QStringLiteral("N° ligne obligatoire"));
}

TEST_F(SalesLimits, WarnOfScrappedAndExpiredUnitsAndOfAnotherClientsPurchase) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    SalesBook notes = book("LIV"), credits = book("AVO");
    Clock::set(QDate(2026, 3, 10));
    const auto warned = [&](SalesBook& of, const char* expiry, const char* conformity) {
        Record unit = dossier.unit(units[0]);
        unit[strproduit.dat_per] = QString::fromLatin1(expiry);
        unit[strproduit.fab_con] = QString::fromLatin1(conformity);
        const Record header = documents::blank(of, QStringLiteral("1"));
        const unit_rules::Warnings found = unit_rules::warnings(of, header, unit);
        return QString(found.doubts.join(u';') + u'|' + found.notes.join(u';'))
            .replace(QStringLiteral("Immatriculation ") + units[0], QStringLiteral("I"));
    };
    EXPECT_EQ(warned(notes, "05/2026", "O"), QStringLiteral("|"));
    EXPECT_EQ(warned(notes, "03/2026", "O"), QStringLiteral("|I : péremption proche, 03/2026"));
    EXPECT_EQ(warned(notes, "02/2026", "Z"), QStringLiteral("I : Ce produit est rebuté;I périmée depuis 02/2026|"));
    EXPECT_EQ(warned(credits, "02/2026", "Z"), QStringLiteral("|"));
    notes.molven.update(strproduit, {{strproduit.clt_vte, QStringLiteral("000002")}}, Criterion());
    EXPECT_EQ(warned(credits, "05/2026", "O"), QStringLiteral("I : vendue au client 000002|"));
    EXPECT_EQ(warned(notes, "05/2026", "O"), QStringLiteral("|"));
}

TEST_F(SalesLimits, ChooseOneOfSeveralLppCodesForTheLine) {
    SalesBook notes = book("LIV");
    Record several(strartlpp);
    several[strartlpp.lpp_ref] = QStringLiteral("FEE");
    several[strartlpp.lpp_1] = QStringLiteral("3100001");
    several[strartlpp.lpp_3] = QStringLiteral("3100003");
    notes.molven.insert(several);
    notes.molven.update(strarticle, {{strarticle.art_lpp, SeveralLpp}}, strarticle.art_ref == QStringLiteral("FEE"));
    const Record header = newDocument(notes);
    document_lines::Draft draft = lineOfArticle(notes, header, QStringLiteral("FEE"));
    EXPECT_EQ(draft.reimbursements, (QStringList{"3100001", "3100003"}));
    EXPECT_EQ(draft.line.value(strlivl.fac_tip), QStringLiteral("3100001"));
    draft.line[strlivl.fac_tip] = QStringLiteral("3100003");
    document_lines::add(notes, header, {draft});
    const Record read = documents::lines(notes, header).record();
    Record line = read;
    line[strlivl.fac_tip] = QStringLiteral("3100002");
    EXPECT_EQ(refusalOf([&] { document_lines::change(notes, header, line, read); }),
              QStringLiteral("Ce code n'existe pas"));
    line[strlivl.fac_tip] = QStringLiteral("3100001");
    document_lines::change(notes, header, line, read);
    EXPECT_EQ(documents::lines(notes, header)[strlivl.fac_tip], QStringLiteral("3100001"));
}

TEST_F(SalesLimits, AddUpTheVatOfEveryCode) {
    SalesBook invoices = book("FAC");
    const Record header = newDocument(invoices, QStringLiteral("2"));
    document_lines::Draft fourth = lineOfArticle(invoices, header, QStringLiteral("FEE"));
    fourth.line[strfacl.fac_tva] = QStringLiteral("4");
    document_lines::add(invoices, header, {lineOfArticle(invoices, header, QStringLiteral("FEE")), fourth});
    const Record total = documents::current(invoices, header);
    EXPECT_EQ(totals::otherVat(strface, total), amountOf("2.1"));
    EXPECT_EQ(total[strface.fac_ttc], amountOf("207.6"));
}

TEST_F(SalesLimits, RecogniseAnArticleNotSubjectToApproval) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    SalesBook consignments = book("CSG");
    consignments.molven.update(strarticle, {{strarticle.art_nho, QStringLiteral(" non soumis")}}, {});
    const Record header = newDocument(consignments);
    EXPECT_EQ(test::lineOfUnit(consignments, header, units[0]).line.value(strcsgl.fac_nho),
              QStringLiteral("NON SOUMIS"));
}

} // namespace molven

#include "sales/proformas.h"

#include "reference/articles.h"
#include "sales/renumbering.h"
#include "support/faults.h"
#include "support/sales.h"

namespace molven {

namespace {

class Proformas : public test::Sales {
protected:
    SalesBook proformas() {
        return SalesBook(dossier.session, documentKind(QStringLiteral("PROFORMA"), DataFile::Proforma));
    }
    SalesBook secondBook(const char* mode) {
        return SalesBook(dossier.session, documentKind(QString::fromLatin1(mode), DataFile::Ostrane));
    }
    /// Of these articles, two each.
    Record write(SalesBook& book, const QStringList& references, const QString& date = {}) {
        Record header = documents::blank(book, QStringLiteral("1"));
        if (!date.isEmpty()) header[strface.fac_datf] = date;
        header = documents::create(book, header);
        QList<document_lines::Draft> drafts;
        for (const QString& reference : references) drafts.append(test::lineOfArticle(book, header, reference, 2));
        document_lines::add(book, header, drafts);
        return documents::current(book, header);
    }
    QStringList faults() { return test::faultsOf(dossier.session); }
};

} // namespace

TEST_F(Proformas, AreDeliveredWithTheirStockAndOpenAgainWithoutTheirNote) {
    SalesBook book = proformas();
    const Decimal stock = dossier.stock(QStringLiteral("SCREW"));
    const Record written = write(book, {QStringLiteral("HIP"), QStringLiteral("SCREW"), QStringLiteral("NOTE")});
    Record paid = written;
    paid[strface.fac_acpt] = 300;
    const Record read = documents::changeFooter(book, paid, written);
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), stock);

    const proformas::Delivered delivered = proformas::deliver(book, read);
    EXPECT_FALSE(delivered.keptDownPayment); // the hip that it was paid for is not on the note
    EXPECT_EQ(delivered.note[strlive.fac_acpt], Decimal());
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), stock - 2);
    SalesBook notes = Sales::book("LIV");
    EXPECT_EQ(documents::linesRead(notes, delivered.note).size(), 2);
    EXPECT_EQ(test::refusalOf([&] { proformas::deliver(book, read); }),
              QStringLiteral("Proforma transféré !!! impossible"));
    EXPECT_EQ(faults(), QStringList());

    renumbering::renumber(dossier.session, *renumbering::ofMenu(QStringLiteral("mnu_util_num_liv")),
                          delivered.note[strlive.fac_no], QStringLiteral("000500"));
    EXPECT_EQ(documents::current(book, read)[strface.fac_blv], QStringLiteral("000500"));
    EXPECT_EQ(faults(), QStringList());

    const Record note = documents::find(notes, QStringLiteral("500")).value();
    documents::remove(notes, note, documents::linesRead(notes, note));
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), stock);
    EXPECT_EQ(documents::requireOpen(book, read)[strface.fac_blv], documents::NotInvoiced);
}

TEST_F(Proformas, AreCheckedAsTheOtherDocuments) {
    SalesBook book = proformas();
    proformas::deliver(book, write(book, {QStringLiteral("SCREW")}));
    SalesBook invoices = secondBook("FAC");
    write(invoices, {QStringLiteral("SCREW")});
    ASSERT_EQ(faults(), QStringList());
    const test::Planted planted[]{
        {"its note", DataFile::Proforma, "update strface set fac_blv = '000777'", "bon de livraison 000777 absent"},
        {"its total", DataFile::Proforma, "update strface set fac_ttc = 1", "totaux autres que ceux des lignes"},
        {"a line's amount", DataFile::Ostrane, "update strfacl set fac_pv = 1 where fac_lg = '001'", "montants autres"},
        {"a header", DataFile::Ostrane, "delete from strface", "lignes sans en-tête"}};
    for (const test::Planted& fault : planted) {
        SCOPED_TRACE(fault.name);
        test::plant(dossier.session, fault.file, fault.sql);
        EXPECT_THAT(faults().join(u'\n').toStdString(), testing::HasSubstr(fault.told));
    }
}

TEST_F(Proformas, OfTheSecondBookBearTheLppCodeAloneUntilFebruary2004) {
    SalesBook book = secondBook("FAC");
    book.molven.update(strarticle,
                       {{strarticle.art_cat, QStringLiteral("T")},
                        {strarticle.art_tip, QStringLiteral("TIPS1")},
                        {strarticle.art_lpp, QStringLiteral("3106185")}},
                       strarticle.art_ref == QStringLiteral("SCREW"));
    for (const auto& [date, code] : {std::pair("29/02/2004", "3106185"), std::pair("01/03/2004", "TIPS1")}) {
        const Record header = write(book, {QStringLiteral("SCREW")}, QString::fromLatin1(date));
        EXPECT_EQ(documents::linesRead(book, header).first()[strfacl.fac_tip], QString::fromLatin1(code)) << date;
    }
}

} // namespace molven

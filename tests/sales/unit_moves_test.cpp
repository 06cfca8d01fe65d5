#include "support/sales.h"

#include "reference/article_tables.h"
#include "sales/integration.h"

namespace molven {

using test::newDocument;
using test::refusalOf;

namespace {

class UnitMoves : public test::Sales {
protected:
    /// A note of two units taken over by an invoice, which is answered.
    Record invoiceOfNote(SalesBook& invoices, const QStringList& units) {
        dossier.document(QStringLiteral("LIV"), units);
        const Record invoice = newDocument(invoices);
        integration::integrate(invoices, invoice, QStringLiteral("1"));
        return documents::current(invoices, invoice);
    }
    QString noteState() {
        SalesBook notes = book("LIV");
        const Record note = documents::find(notes, QStringLiteral("1")).value();
        return note[strlive.fac_cpt] + note[strlive.fac_blv];
    }
    void removeLine(SalesBook& book, const Record& header, qint64 position = 0) {
        document_lines::remove(book, header, documents::lines(book, header).at(position));
    }
    QString implantationOf(const QString& unit) {
        const Record record = dossier.unit(unit);
        return record[strproduit.reg_pat] + u'|' + record[strproduit.reg_clt] + u'|' + record[strproduit.reg_dat] +
               u'|' + record[strproduit.ref_vte];
    }
};

const char* const Unsold = "N/001//000000";
const char* const Delivered = "L/101/000001/000001";
const char* const Sold = "O/101/000001/000001";

} // namespace

TEST_F(UnitMoves, OpenTheNoteAgainWithTheLastOfItsLinesOnTheInvoice) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    SalesBook invoices = book("FAC");
    const Record invoice = invoiceOfNote(invoices, units);
    document_lines::add(invoices, invoice, {test::lineOfArticle(invoices, invoice, QStringLiteral("FEE"))});
    removeLine(invoices, invoice);
    EXPECT_EQ(stateOf(units[0]).toStdString() + ' ' + stateOf(units[1]).toStdString(),
              std::string(Unsold) + ' ' + Sold);
    EXPECT_EQ(noteState(), QStringLiteral("T000001")) << "a line of it is left";
    removeLine(invoices, invoice);
    EXPECT_EQ(noteState(), QStringLiteral("N000000"));
    for (const QString& unit : units) {
        EXPECT_EQ(stateOf(unit).toStdString(), Delivered);
        EXPECT_EQ(implantationOf(unit), QStringLiteral("D'ALMEIDA Hélène|000001|10/03/2026|D'ALMEIDA "));
    }
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    EXPECT_EQ(invoices.vente.count(strfacl), 2) << "the other line and one hidden record";
    integration::integrate(invoices, invoice, QStringLiteral("1"));
    EXPECT_EQ(stateOf(units[0]).toStdString(), Sold);
}

TEST_F(UnitMoves, OfOneInvoiceLeaveEachUnitItsOwnPriceAndEachArticleItsOwnStock) {
    const QStringList hips = dossier.receive(QStringLiteral("HIP"), 3),
                      grafts = dossier.receive(QStringLiteral("GRAFT"), 2);
    SalesBook invoices = book("FAC");
    invoices.molven.update(strarticle, {{strarticle.art_pv1, QStringLiteral("77")}},
                           strarticle.art_ref == QStringLiteral("GRAFT"));
    const Record invoice = invoiceOfNote(invoices, {hips[0], grafts[0], hips[1]});
    QStringList prices;
    for (const Record& line : documents::lines(invoices, invoice)) {
        const Record unit = dossier.unit(line[strfacl.fac_imm]);
        EXPECT_EQ(unit[strproduit.pro_vte], line[strfacl.fac_pv]) << qPrintable(unit.value(strproduit.imm_art));
        EXPECT_EQ(stateOf(line[strfacl.fac_imm]).toStdString(), Sold);
        prices.append(unit.value(strproduit.pro_vte));
    }
    ASSERT_EQ(prices.size(), 3);
    EXPECT_EQ(prices[1], QStringLiteral("69.3"));
    EXPECT_EQ(prices[0], prices[2]);
    EXPECT_NE(prices[0], prices[1]);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(1));
    EXPECT_EQ(dossier.stock(QStringLiteral("GRAFT")), Decimal(1));
    EXPECT_EQ(dossier.unit(hips[2])[strproduit.tes_vte], state::InStock);
}

TEST_F(UnitMoves, OpenTheNoteAgainWhenItsInvoiceIsDroppedButLeaveUnitsThatMovedOn) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    SalesBook invoices = book("FAC"), notes = book("LIV");
    const Record invoice = invoiceOfNote(invoices, units);
    removeLine(invoices, invoice);
    dossier.document(QStringLiteral("CSG"), {units[0]}, QStringLiteral("2"));
    documents::abandon(invoices, invoice);
    EXPECT_EQ(noteState(), QStringLiteral("N000000"));
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("O/102/000001/000001"));
    EXPECT_EQ(stateOf(units[1]).toStdString(), Delivered);
    const Record next = newDocument(invoices);
    EXPECT_EQ(
        refusalOf([&] { integration::integrate(invoices, next, QStringLiteral("1")); }),
        QStringLiteral("L'immatriculation %1 n'est plus livrée par ce bon : supprimer sa ligne du bon").arg(units[0]));
    const Record note = documents::find(notes, QStringLiteral("1")).value();
    removeLine(notes, note);
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("O/102/000001/000001")) << "sold to another client since";
    integration::integrate(invoices, next, QStringLiteral("1"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(0));
}

TEST_F(UnitMoves, RefuseToUndoWhatIsArchived) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    SalesBook invoices = book("FAC");
    const Record invoice = invoiceOfNote(invoices, units);
    invoices.historic.insert(invoices.vente.find(strlive, {}).value());
    invoices.vente.remove(strlive);
    EXPECT_EQ(refusalOf([&] { removeLine(invoices, invoice); }),
              QStringLiteral("Le bon de livraison 000001 est archivé : le réactualiser d'abord"));
    invoices.historic.insert(dossier.unit(units[0]));
    invoices.molven.remove(strproduit);
    EXPECT_EQ(refusalOf([&] { removeLine(invoices, invoice); }),
              QStringLiteral("L'immatriculation %1 est archivée : sa ligne ne peut être supprimée").arg(units[0]));
    EXPECT_EQ(documents::lines(invoices, invoice).count(), 1);
}

/// Sale and credit note by kind; archived: the sale moved to the history file before the credit line is deleted.
struct TakenBackSale {
    const char* name;
    const char* sale;
    const char* credit;
    bool archived;
    const char* restored;
};

class CreditLines : public UnitMoves, public testing::WithParamInterface<TakenBackSale> {};

TEST_P(CreditLines, GiveTheUnitBackToItsSaleInEitherFamilyAndFile) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    const bool integrated = QLatin1String(GetParam().sale) == QLatin1String("BL");
    SalesBook invoices = book("FAC");
    if (integrated)
        invoiceOfNote(invoices, units);
    else
        dossier.document(QString::fromLatin1(GetParam().sale), units);
    const QString before = implantationOf(units[0]);
    dossier.document(QString::fromLatin1(GetParam().credit), units);
    EXPECT_EQ(implantationOf(units[0]).left(3), QStringLiteral("|||")) << "implanted no longer";
    SalesBook credits = book(GetParam().credit);
    const Record credit = documents::last(credits).value();
    if (GetParam().archived) {
        for (const Record& header : credits.vente.select(strface, strface.fac_mode == QStringLiteral("FAC")))
            credits.historic.insert(header);
        for (const Record& line : credits.vente.select(strfacl, strfacl.fac_qte > QStringLiteral("0")))
            credits.historic.insert(line);
        credits.vente.remove(strface, strface.fac_mode == QStringLiteral("FAC"));
        credits.vente.remove(strfacl, strfacl.fac_qte > QStringLiteral("0"));
    }
    removeLine(credits, credit);
    EXPECT_EQ(stateOf(units[0]).toStdString(), GetParam().restored);
    EXPECT_EQ(implantationOf(units[0]), before);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(0));
}

INSTANTIATE_TEST_SUITE_P(Sales, CreditLines,
                         testing::Values(TakenBackSale{"invoice", "FAC", "AVO", false, Sold},
                                         TakenBackSale{"consignment", "CSG", "AVG", false, Sold},
                                         TakenBackSale{"consignmentByCreditNote", "CSG", "AVO", false, Sold},
                                         TakenBackSale{"invoiceByConsignmentCredit", "FAC", "AVG", false, Sold},
                                         TakenBackSale{"integrated", "BL", "AVO", false, Sold},
                                         TakenBackSale{"archived", "FAC", "AVG", true, Sold}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(UnitMoves, AreUndoneInTheOrderOppositeToTheirDocuments) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    SalesBook invoices = book("FAC"), credits = book("AVO");
    dossier.document(QStringLiteral("FAC"), units);
    dossier.document(QStringLiteral("AVO"), units);
    const QString told =
        QStringLiteral("L'immatriculation %1 a été reprise ou revendue depuis (document %2) : sa ligne "
                       "ne peut être supprimée");
    const Record invoice = documents::last(invoices).value(), credit = documents::last(credits).value();
    EXPECT_EQ(refusalOf([&] { removeLine(invoices, invoice); }), told.arg(units[0], QStringLiteral("000002")));
    dossier.document(QStringLiteral("FAC"), units);
    EXPECT_EQ(refusalOf([&] { removeLine(credits, credit); }), told.arg(units[0], QStringLiteral("000003")));
    removeLine(invoices, documents::last(invoices).value());
    removeLine(credits, credit);
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("O/101/000001/000001"));
    removeLine(invoices, invoice);
    EXPECT_EQ(stateOf(units[0]).toStdString(), Unsold);
    EXPECT_EQ(dossier.unit(units[0])[strproduit.fam_dep], QString());
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(1));
}

TEST_F(UnitMoves, GiveTheUnitBackToTheSaleThatWasCreditedNotToAnotherOfItsPast) {
    const auto givenBack = [&](const char* sale, const QString& client) {
        const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
        dossier.document(QStringLiteral("FAC"), units, QStringLiteral("1"));
        dossier.document(QStringLiteral("AVO"), units, QStringLiteral("1"));
        SalesBook sales = book(sale), credits = book("AVO");
        Record header = documents::blank(sales, client);
        header[sales.kind().headers.fac_datf] = QStringLiteral("05/03/2026"); // typed in late
        header = documents::create(sales, header);
        document_lines::add(sales, header, {test::lineOfUnit(sales, header, units[0])});
        const QString sold = stateOf(units[0]);
        dossier.document(QStringLiteral("AVO"), units, client);
        removeLine(credits, documents::last(credits).value());
        return QString(stateOf(units[0]) + u'|' + sold);
    };
    for (const char* sale : {"FAC", "CSG"})
        for (const char* client : {"1", "2"}) {
            const QString both = givenBack(sale, QString::fromLatin1(client));
            EXPECT_EQ(both.section(u'|', 0, 0), both.section(u'|', 1)) << sale << " to client " << client;
        }
}

TEST_F(UnitMoves, KeepTheImplantationEnteredOnTheUnitThroughACreditNoteThatIsUndone) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    dossier.document(QStringLiteral("FAC"), units);
    SalesBook credits = book("AVO");
    credits.molven.update(
        strproduit, {{strproduit.reg_pat, QStringLiteral("ZOE")}, {strproduit.reg_dat, QStringLiteral("09/03/2026")}},
        strproduit.imm_art == units[0]);
    const QString before = implantationOf(units[0]);
    dossier.document(QStringLiteral("AVO"), units);
    EXPECT_EQ(implantationOf(units[0]).left(3), QStringLiteral("|||"));
    removeLine(credits, documents::last(credits).value());
    EXPECT_EQ(implantationOf(units[0]), before);
}

TEST_F(UnitMoves, CreditASaleFromTheDepotThatItWentTo) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    SalesBook invoices = book("FAC");
    Record header = documents::blank(invoices, QStringLiteral("1"));
    header[strface.fac_dep] = QStringLiteral("102");
    header = documents::create(invoices, header);
    document_lines::add(invoices, header, {test::lineOfUnit(invoices, header, units[0])});
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("O/102/000001/000001"));
    EXPECT_EQ(checkOf("AVO", units[0]), QStringLiteral("(accepté)"));
    invoices.molven.update(strproduit, {{strproduit.num_dep, QStringLiteral("XXX")}}, {});
    EXPECT_EQ(checkOf("AVO", units[0]), QStringLiteral("Cette immatriculation n'est pas dans le depot client"));
}

TEST_F(UnitMoves, CorrectThePatientOfTheUnitsThatTheDocumentHolds) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    SalesBook invoices = book("FAC");
    dossier.document(QStringLiteral("FAC"), units);
    units::implant(invoices.molven, dossier.unit(units[1]),
                   {QStringLiteral("MARTIN"), QStringLiteral("000001"), QStringLiteral("11/03/2026")});
    dossier.document(QStringLiteral("AVO"), {units[2]});
    const Record read = documents::last(invoices).value();
    Record header = read;
    header[strface.fac_pat] = QStringLiteral("DURAND Anne-Marie");
    documents::change(invoices, header, read);
    EXPECT_EQ(implantationOf(units[0]), QStringLiteral("DURAND Anne-Marie|000001|10/03/2026|DURAND Ann"));
    EXPECT_EQ(implantationOf(units[1]), QStringLiteral("MARTIN|000001|11/03/2026|DURAND Ann")) << "entered on the unit";
    EXPECT_EQ(implantationOf(units[2]), QStringLiteral("|||D'ALMEIDA ")) << "taken back since";
}

TEST_F(UnitMoves, KeepTheSalePriceOnTheBasisOfTheUnit) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    SalesBook invoices = book("FAC");
    invoices.molven.update(strproduit, {{strproduit.pro_tar, QStringLiteral("T")}}, {});
    dossier.document(QStringLiteral("FAC"), units);
    EXPECT_EQ(dossier.unit(units[0]).value(strproduit.pro_vte), QStringLiteral("94.95")) << "90 with 5.5 %";
    const Record header = documents::last(invoices).value();
    const Record read = documents::lines(invoices, header).record();
    Record line = read;
    line[strfacl.fac_px] = Decimal(200);
    line[strfacl.fac_remx] = Decimal(0);
    document_lines::change(invoices, header, line, read);
    EXPECT_EQ(dossier.unit(units[0]).value(strproduit.pro_vte), QStringLiteral("211"));
}

} // namespace molven

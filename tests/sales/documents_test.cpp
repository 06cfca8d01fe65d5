#include "support/sales.h"

#include "data/dates.h"
#include "reference/articles.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/numbering.h"
#include "sales/totals.h"

namespace molven {

using test::lineOfArticle;
using test::lineOfUnit;
using test::newDocument;
using test::refusalOf;
using test::Sales;

namespace {

class SalesOfLb : public Sales {
protected:
    SalesOfLb() : Sales(QStringLiteral("LB")) {}
};

Decimal number(const char* text) { return Decimal::parse(QString::fromLatin1(text)).value(); }

} // namespace

TEST_F(Sales, MoveAUnitAsTheDocumentSays) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 4);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    dossier.document(QStringLiteral("CSG"), {units[1]});
    dossier.document(QStringLiteral("FAC"), {units[2]});
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("L/101/000001/000001"));
    EXPECT_EQ(stateOf(units[1]), QStringLiteral("O/101/000001/000001"));
    EXPECT_EQ(stateOf(units[2]), QStringLiteral("O/101/000001/000001"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2)) << "a delivered unit is still the distributor's";
    const Record sold = dossier.unit(units[2]);
    EXPECT_EQ(sold[strproduit.reg_pat] + u'|' + sold[strproduit.ref_vte] + u'|' + sold[strproduit.nom_dep] + u'|' +
                  sold[strproduit.tri_vte],
              QStringLiteral("D'ALMEIDA Hélène|D'ALMEIDA |CLINIQUE D|20260310"));
    EXPECT_EQ(sold[strproduit.pro_vte], Decimal(90)) << "100 less 10 percent";
    EXPECT_EQ(sold[strproduit.fam_dep], QStringLiteral("EST"));

    dossier.document(QStringLiteral("AVO"), {units[2]});
    EXPECT_EQ(stateOf(units[2]), QStringLiteral("N/001/AVOIR/000002"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(3));
}

TEST_F(Sales, RefuseAUnitThatIsElsewhereOrInAnotherState) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 5);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    dossier.document(QStringLiteral("FAC"), {units[1]});
    dossier.document(QStringLiteral("BTR"), {units[2], units[3]}, QStringLiteral("2"));
    for (const char* mode : {"LIV", "CSG", "FAC"}) {
        EXPECT_EQ(checkOf(mode, QStringLiteral("77777777")), QStringLiteral("Immatriculation inconnue")) << mode;
        EXPECT_EQ(checkOf(mode, units[0]), QStringLiteral("Cette immatriculation a été livrée")) << mode;
        EXPECT_EQ(checkOf(mode, units[1]), QStringLiteral("Cette immatriculation a été vendue")) << mode;
        EXPECT_EQ(checkOf(mode, units[4]), QStringLiteral("(accepté)")) << mode;
    }
    EXPECT_EQ(checkOf("LIV", units[2], QStringLiteral("2")),
              QStringLiteral("Cette immatriculation n'est pas dans le depot 001"));
    EXPECT_EQ(checkOf("FAC", units[2], QStringLiteral("1")),
              QStringLiteral("Cette immatriculation n'est ni dans le depot 001, ni dans celui du client"));
    EXPECT_EQ(checkOf("FAC", units[2], QStringLiteral("2")), QStringLiteral("(accepté)"));
    EXPECT_EQ(checkOf("AVO", units[4]), QStringLiteral("Cette immatriculation n'a pas été vendue"));
    EXPECT_EQ(checkOf("AVO", units[1], QStringLiteral("2")),
              QStringLiteral("Cette immatriculation n'est pas dans le depot client"));
    EXPECT_EQ(checkOf("AVG", units[1]), QStringLiteral("(accepté)"));
    dossier.session.spe_btl = QStringLiteral("O");
    EXPECT_EQ(checkOf("LIV", units[2], QStringLiteral("2")), QStringLiteral("(accepté)"))
        << "the dossier lets deliver from the client's depot";
    EXPECT_EQ(checkOf("LIV", units[2], QStringLiteral("1")),
              QStringLiteral("Cette immatriculation n'est ni dans le depot 001, ni dans celui du client"));
}

TEST_F(SalesOfLb, TakeUnitsFromTheSecondaryDepotWhenItIsTheDocuments) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    SalesBook invoices = book("FAC");
    Record header = documents::blank(invoices, QStringLiteral("1"));
    header[strface.fac_dep] = QStringLiteral("261");
    EXPECT_EQ(refusalOf([&] { unit_rules::check(invoices, header, units[0]); }),
              QStringLiteral("Cette immatriculation n'est pas au depot 261"));
    invoices.molven.update(strproduit, {{strproduit.num_dep, QStringLiteral("261")}}, {});
    EXPECT_EQ(refusalOf([&] { unit_rules::check(invoices, header, units[0]); }), QStringLiteral("(accepté)"));
}

TEST_F(Sales, CheckTheHeaderInOrder) {
    SalesBook notes = book("LIV");
    Record header(strlive);
    const auto refused = [&] { return refusalOf([&] { documents::create(notes, header); }); };
    EXPECT_EQ(refused(), QStringLiteral("Client obligatoire"));
    header = documents::blank(notes, QStringLiteral("1"));
    header[strlive.fac_datf] = QStringLiteral("30/02/2026");
    EXPECT_EQ(refused(), QStringLiteral("Date invalide"));
    header[strlive.fac_datf] = QStringLiteral("10/03/2026");
    header[strlive.fac_datc] = QStringLiteral("11/03/2026");
    EXPECT_EQ(refused(), QStringLiteral("Date commande > date du document"));
    header[strlive.fac_datc] = QString();
    header[strlive.fac_mon] = QStringLiteral("XXX");
    EXPECT_EQ(refused(), QStringLiteral("Monnaie inconnue"));
    header[strlive.fac_mon] = QStringLiteral("EUR");
    header[strlive.fac_chr] = QStringLiteral("999");
    EXPECT_EQ(refused(), QStringLiteral("Ce code n'existe pas"));
    header[strlive.fac_chr] = QString();
    header[strlive.fac_dep] = QStringLiteral("777");
    EXPECT_EQ(refused(), QStringLiteral("Dépôt inconnu"));
    EXPECT_EQ(notes.vente.count(strlive), 0);
    header[strlive.fac_dep] = QStringLiteral("101");
    Record address(strbl);
    address[strbl.bl_l1] = QStringLiteral("QUAI D'OR");
    const Record written = documents::create(notes, header, address);
    EXPECT_EQ(written[strlive.fac_no] + written[strlive.fac_aa] + written[strlive.fac_lg] + written[strlive.fac_cpt] +
                  written[strlive.fac_blv] + written[strlive.tri_datf] + written[strlive.fac_ech],
              QStringLiteral("0000012026ENTN0000002026031009/04/2026"));
    EXPECT_EQ(notes.blent.find(strbl, strbl.bl_cod == QStringLiteral("000001"))->value(strbl.bl_l1),
              QStringLiteral("QUAI D'OR"));
}

TEST_F(Sales, DoNotInvoiceAClientWithoutAuthorisation) {
    SalesBook notes = book("LIV"), invoices = book("FAC"), credits = book("AVO");
    notes.molven.update(strclient, {{strclient.clt_fac, QStringLiteral("N")}},
                        strclient.clt_cod == QStringLiteral("000001"));
    const QString refused = QStringLiteral("Ce client n'a pas d'autorisation de facturation");
    EXPECT_EQ(refusalOf([&] { documents::blank(notes, QStringLiteral("1")); }), QStringLiteral("(accepté)"));
    EXPECT_EQ(refusalOf([&] { documents::blank(invoices, QStringLiteral("1")); }), refused);
    EXPECT_EQ(refusalOf([&] { documents::blank(credits, QStringLiteral("1")); }), refused);
}

TEST_F(Sales, ShareOneSeriesBetweenInvoicesAndCreditNotesAcrossYears) {
    SalesBook invoices = book("FAC"), credits = book("AVO"), notes = book("LIV");
    EXPECT_EQ(newDocument(invoices)[strface.fac_no], QStringLiteral("000001"));
    Record nextYear = documents::blank(credits, QStringLiteral("1"));
    nextYear[strface.fac_datf] = QStringLiteral("02/01/2027");
    EXPECT_EQ(documents::create(credits, nextYear)[strface.fac_no], QStringLiteral("000002"));
    EXPECT_EQ(newDocument(notes)[strlive.fac_no], QStringLiteral("000001"));
    EXPECT_EQ(newDocument(invoices)[strface.fac_no], QStringLiteral("000003"));
    const auto numberOf = [](const std::optional<Record>& header) {
        return header ? header->value(strface.fac_no) : QStringLiteral("none");
    };
    EXPECT_EQ(numberOf(documents::before(invoices, QStringLiteral("3"))), QStringLiteral("000001"));
    EXPECT_EQ(numberOf(documents::after(invoices, QStringLiteral("000001"))), QStringLiteral("000003"));
    EXPECT_EQ(numberOf(documents::last(credits)), QStringLiteral("000002"));
    EXPECT_EQ(numberOf(documents::before(credits, QStringLiteral("2"))), QStringLiteral("none"));
    EXPECT_EQ(documents::ofClient(invoices, QStringLiteral("1")).count(), 2);
    EXPECT_EQ(refusalOf([&] { documents::find(invoices, QStringLiteral("2")); }),
              QStringLiteral("Ce N° est un avoir : voir la gestion des avoirs"));
    EXPECT_EQ(refusalOf([&] { documents::find(credits, QStringLiteral("3")); }),
              QStringLiteral("Ce N° est une facture : voir la gestion des factures"));
    EXPECT_EQ(refusalOf([] { documentKind(QStringLiteral("RED")); }), QStringLiteral("Type de document inconnu : RED"));
    invoices.vente.update(strface, {{strface.fac_mode, QString()}}, {});
    invoices.vente.update(strface, {{strface.fac_ht, QStringLiteral("-90")}},
                          strface.fac_no == QStringLiteral("000002"));
    EXPECT_EQ(numberOf(documents::last(credits)) + numberOf(documents::before(invoices, QStringLiteral("3"))),
              QStringLiteral("000002000001"))
        << "old documents are told by their total";
    Record archived = documents::last(invoices).value();
    archived[strface.fac_no] = QStringLiteral("000041");
    invoices.historic.insert(archived);
    EXPECT_EQ(newDocument(invoices)[strface.fac_no], QStringLiteral("000042")) << "an archived number is never reused";
    invoices.vente.update(strface, {{strface.fac_no, QStringLiteral("999999")}},
                          strface.fac_no == QStringLiteral("000042"));
    EXPECT_EQ(refusalOf([&] { newDocument(invoices); }), QStringLiteral("Numérotation impossible"));
}

TEST_F(Sales, NumberLinesUpTo996BesideTheHiddenRecord) {
    SalesBook notes = book("LIV");
    const Record header = newDocument(notes);
    document_lines::add(notes, header, {lineOfArticle(notes, header, QStringLiteral("FEE"))});
    EXPECT_EQ(notes.vente.count(strlivl), 2);
    EXPECT_EQ(documents::lines(notes, header).count(), 1);
    EXPECT_EQ(refusalOf([&] {
                  document_lines::add(notes, header, {lineOfArticle(notes, header, QStringLiteral("FEE"))}, 997);
              }),
              QStringLiteral("Document plein - ligne non crée"));
    document_lines::add(notes, header, {lineOfArticle(notes, header, QStringLiteral("FEE"))}, 996);
    EXPECT_EQ(
        refusalOf([&] { document_lines::add(notes, header, {lineOfArticle(notes, header, QStringLiteral("FEE"))}); }),
        QStringLiteral("Document plein - ligne non crée"));
    EXPECT_EQ(documents::lines(notes, header).count(), 2);
}

TEST_F(Sales, InsertALineBeforeAnotherButNoText) {
    SalesBook notes = book("LIV");
    const Record header = newDocument(notes);
    document_lines::add(
        notes, header,
        {lineOfArticle(notes, header, QStringLiteral("FEE")), lineOfArticle(notes, header, QStringLiteral("NOTE"))});
    EXPECT_EQ(refusalOf([&] {
                  document_lines::insert(notes, header, lineOfArticle(notes, header, QStringLiteral("NOTE")),
                                         documents::lines(notes, header).record());
              }),
              QStringLiteral("impossible d'insérer du texte, il faut l'ajouter"));
    document_lines::insert(notes, header, lineOfArticle(notes, header, QStringLiteral("SCREW"), 3),
                           documents::lines(notes, header).at(1));
    QStringList order;
    for (const Record& line : documents::lines(notes, header))
        order.append(line[strlivl.fac_lg] + line[strlivl.fac_ref]);
    EXPECT_EQ(order.join(u' '), QStringLiteral("001FEE 002SCREW 003NOTE"));
}

TEST_F(Sales, PriceByArticleThenDiscountThenTariff) {
    SalesBook notes = book("LIV");
    const Record header = newDocument(notes);
    const auto priceOf = [&](const Record& document) {
        const document_lines::Draft draft = lineOfArticle(notes, document, QStringLiteral("SCREW"));
        const Record& line = draft.line;
        return line[strlivl.fac_px].toString() + u'-' + line[strlivl.fac_remx].toString() + u' ' + draft.priceMessage;
    };
    EXPECT_EQ(priceOf(header), QStringLiteral("100-10 Ce prix de vente est HT"));
    EXPECT_EQ(priceOf(newDocument(notes, QStringLiteral("2"))), QStringLiteral("100-0 Ce prix de vente est HT"));
    Record tariff(strtarifclt);
    tariff[strtarifclt.tar_clt] = QStringLiteral("000001");
    tariff[strtarifclt.tar_ref] = QStringLiteral("SCREW");
    tariff[strtarifclt.tar_pvt] = Decimal(77);
    notes.molven.insert(tariff);
    EXPECT_EQ(priceOf(header), QStringLiteral("77-0 Ce prix de vente est HT"));
    notes.molven.remove(strtarifclt);
    notes.molven.update(strarticle, {{strarticle.art_tar, QStringLiteral("T")}}, {});
    EXPECT_EQ(priceOf(header), QStringLiteral("105.5-10 Ce prix de vente est TTC"));
}

TEST_F(Sales, TotalALineOnEitherBasisAndADocumentWithItsFooter) {
    EXPECT_EQ(pricing::net(number("99.99"), number("12.5")).toString(), QStringLiteral("87.49"));
    EXPECT_EQ(pricing::net(number("99.99"), Decimal()).toString(), QStringLiteral("99.99"));
    const pricing::LineTotal ht = pricing::lineTotal(Decimal(3), number("33.33"), true, number("5.5"));
    EXPECT_EQ(ht.ht.toString() + u' ' + ht.ttc.toString(), QStringLiteral("99.99 105.49"));
    const pricing::LineTotal ttc = pricing::lineTotal(Decimal(1), number("105.50"), false, number("5.5"));
    EXPECT_EQ(ttc.ht.toString() + u' ' + ttc.ttc.toString(), QStringLiteral("100 105.5"));

    SalesBook invoices = book("FAC");
    Record header = newDocument(invoices, QStringLiteral("2"));
    document_lines::Draft twenty = lineOfArticle(invoices, header, QStringLiteral("FEE"), 2);
    twenty.line[strfacl.fac_tva] = QStringLiteral("2");
    document_lines::add(invoices, header, {lineOfArticle(invoices, header, QStringLiteral("FEE"), 1), twenty});
    const auto stored = [&] { return documents::find(invoices, header[strface.fac_no]).value(); };
    const auto totalsOf = [&](const Record& h) {
        return QStringList{h[strface.fac_ht].toString(),  h[strface.fac_tv1].toString(), h[strface.fac_tv2].toString(),
                           h[strface.fac_tvp].toString(), h[strface.fac_ttc].toString(), h[strface.fac_ffa].toString()}
            .join(u' ');
    };
    EXPECT_EQ(totalsOf(stored()), QStringLiteral("300 5.5 40 0 345.5 345.5"));
    Record footer = stored();
    footer[strface.fac_rem] = Decimal(10);
    footer[strface.fac_port] = Decimal(20);
    footer[strface.fac_acpt] = Decimal(50);
    documents::changeFooter(invoices, footer, stored());
    EXPECT_EQ(totalsOf(stored()), QStringLiteral("290 4.95 36 4 334.95 284.95"));
    footer[strface.fac_rglt] = QStringLiteral("77");
    EXPECT_EQ(refusalOf([&] { documents::changeFooter(invoices, footer, stored()); }),
              QStringLiteral("mode reglement inconnu"));
}

TEST_F(Sales, MoveTheQuantityOfAnUntrackedArticleAndGiveItBack) {
    SalesBook notes = book("LIV");
    const Record header = newDocument(notes);
    articles::moveStock(notes.molven, QStringLiteral("SCREW"), Decimal(5));
    const document_lines::Draft seven = lineOfArticle(notes, header, QStringLiteral("SCREW"), 7);
    EXPECT_EQ(document_lines::stockWarning(notes, seven),
              QStringLiteral("ATTENTION ... Stock insuffisant ... stock dispo : 5"));
    document_lines::add(notes, header, {seven});
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(-2));
    Record line = documents::lines(notes, header).record();
    line[strlivl.fac_qte] = Decimal(4);
    line[strlivl.fac_px] = number("12.345");
    document_lines::change(notes, header, line, documents::lines(notes, header).record());
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(1));
    EXPECT_EQ(documents::find(notes, header[strlive.fac_no])->value(strlive.fac_ht), QStringLiteral("44.44"));
    document_lines::remove(notes, header, documents::lines(notes, header).record());
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(5));
}

TEST_F(Sales, UndoALineAndADeliveryNoteButNoInvoice) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("LIV"), {units[0], units[1]});
    dossier.document(QStringLiteral("FAC"), {units[2]});
    SalesBook notes = book("LIV"), invoices = book("FAC");
    const Record note = documents::find(notes, QStringLiteral("1")).value();
    document_lines::remove(notes, note, documents::lines(notes, note).record());
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("N/001//000000"));
    EXPECT_EQ(dossier.unit(units[0]).value(strproduit.reg_pat) + dossier.unit(units[0]).value(strproduit.clt_vte),
              QString());
    documents::remove(notes, documents::current(notes, note), documents::linesRead(notes, note));
    EXPECT_EQ(stateOf(units[1]), QStringLiteral("N/001//000000"));
    EXPECT_EQ(notes.vente.count(strlive) + notes.vente.count(strlivl), 0);
    EXPECT_EQ(
        refusalOf([&] { documents::remove(invoices, documents::find(invoices, QStringLiteral("1")).value(), {}); }),
        QStringLiteral("Impossible de supprimer une Facture ou un Avoir ou un bon consignation"));
}

TEST_F(Sales, GiveAUnitBackToItsInvoiceWhenTheCreditLineIsDeleted) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    dossier.document(QStringLiteral("FAC"), units);
    dossier.document(QStringLiteral("AVO"), units);
    SalesBook credits = book("AVO");
    const Record credit = documents::last(credits).value();
    EXPECT_EQ(credit[strface.fac_ttc].toString(), QStringLiteral("-94.95"));
    document_lines::remove(credits, credit, documents::lines(credits, credit).record());
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("O/101/000001/000001"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(0));
}

TEST_F(Sales, IntegrateADeliveryNoteOnceAndWhole) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 4);
    dossier.document(QStringLiteral("LIV"), {units[0], units[1]});
    dossier.document(QStringLiteral("LIV"), {units[2]}, QStringLiteral("2"));
    SalesBook invoices = book("FAC"), notes = book("LIV");
    newDocument(notes);
    const Record invoice = newDocument(invoices);
    const auto integrate = [&](const char* note) {
        return refusalOf([&] { integration::integrate(invoices, invoice, QString::fromLatin1(note)); });
    };
    EXPECT_EQ(integrate("9"), QStringLiteral("Ce Bon de Livraison n'existe pas"));
    EXPECT_EQ(integrate("2"), QStringLiteral("Ce Bon de Livraison est au client : 000002"));
    EXPECT_EQ(integrate("3"), QStringLiteral("Aucune ligne sur ce Bon"));
    EXPECT_EQ(integration::openDeliveryNotes(invoices, invoice).count(), 2);
    EXPECT_EQ(integrate("1"), QStringLiteral("(accepté)"));
    EXPECT_EQ(integrate("1"), QStringLiteral("Ce bon de Livraison a été facturé"));
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("O/101/000001/000001"));
    EXPECT_EQ(dossier.unit(units[0])[strproduit.ref_vte], QStringLiteral("BL/000001"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    const Record note = documents::find(notes, QStringLiteral("1")).value();
    EXPECT_EQ(note[strlive.fac_cpt] + note[strlive.fac_blv], QStringLiteral("T000001"));
    EXPECT_EQ(refusalOf([&] { documents::remove(notes, note, {}); }),
              QStringLiteral("Bon Livraison facturé !!! impossible"));
    EXPECT_EQ(refusalOf([&] { documents::change(notes, note, note); }),
              QStringLiteral("Document transféré non modifiable"));
    const Criterion hidden = strfacl.fac_lg == QStringLiteral("000");
    EXPECT_EQ(invoices.vente.count(strfacl, hidden && strfacl.fac_nbl == QStringLiteral("000001")), 1);
    EXPECT_EQ(documents::lines(invoices, invoice).count(), 2);
    EXPECT_EQ(documents::find(invoices, QStringLiteral("1"))->value(strface.fac_ht), QStringLiteral("180"));
}

TEST_F(Sales, RefuseANoteWhoseLinesDoNotFit) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    dossier.document(QStringLiteral("LIV"), units);
    SalesBook invoices = book("FAC");
    const Record invoice = newDocument(invoices);
    document_lines::add(invoices, invoice, {lineOfArticle(invoices, invoice, QStringLiteral("FEE"))}, 995);
    EXPECT_EQ(refusalOf([&] { integration::integrate(invoices, invoice, QStringLiteral("1")); }),
              QStringLiteral("Impossible d'intégrer ce BL, trop de lignes ..."));
    EXPECT_EQ(stateOf(units[0]).left(1), QStringLiteral("L"));
}

TEST_F(Sales, OfferARangeOfTheUnitsThatMayLeave) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 5);
    dossier.document(QStringLiteral("FAC"), {units[2]});
    SalesBook notes = book("LIV");
    const Record header = documents::blank(notes, QStringLiteral("1"));
    const auto count = [&](const QString& first, const QString& last) {
        return unit_rules::candidates(notes, header, QStringLiteral("HIP"), first, last).count();
    };
    EXPECT_EQ(count(units[1], units[4]), 3);
    EXPECT_EQ(refusalOf([&] { count(units[2], units[2]); }),
              QStringLiteral("Aucune immatriculation disponible dans le dépôt"));
}

} // namespace molven

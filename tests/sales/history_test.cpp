#include "support/dossier.h"

#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/renumbering.h"
#include "sales/unit_history.h"
#include "sales/unit_steps.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

TEST(UnitHistories, TellEveryDocumentOfAUnitCurrentAndArchived) {
    Dossier dossier;
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    dossier.document(QStringLiteral("LIV"), {unit});
    SalesBook invoices(dossier.session, documentKind(QStringLiteral("FAC")));
    integration::integrate(invoices, test::newDocument(invoices), QStringLiteral("1"));
    UnitHistory history = unit_history::find(dossier.session, QStringLiteral(" %1").arg(unit));
    EXPECT_EQ(history.label, QStringLiteral("ARTICLE HIP"));
    EXPECT_EQ(history.current.deliveries.size() + history.current.invoices.size(), 2);
    EXPECT_EQ(history.archived.invoices.size(), 0);
    EXPECT_TRUE(unit_history::lines(history).join(u'\n').contains(QStringLiteral("patient D'ALMEIDA Hélène")));
    const auto road = [&history] {
        QStringList steps;
        for (const Record& step : history.steps)
            steps.append(step[strsuivi.sui_lib] + u' ' + step[strsuivi.sui_mode] + step[strsuivi.sui_arc]);
        return steps.join(u',');
    };
    EXPECT_EQ(road(), QStringLiteral("Réception ,Bon de Livraison LIV,Facture FAC,Pose "));

    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Database historic = workspace.open(dossier.session.historic());
    historic.insert(dossier.unit(unit));
    molven.remove(strproduit);
    history = unit_history::find(dossier.session, unit);
    EXPECT_TRUE(history.current.unit.isEmpty());
    EXPECT_EQ(history.archived.unit.size(), 1);
    EXPECT_EQ(road(), QStringLiteral("Réception ,Bon de Livraison LIV,Facture FAC,Pose "));
    EXPECT_EQ(refusalOf([&] { unit_history::find(dossier.session, QStringLiteral("26039999")); }),
              QStringLiteral("Immatriculation inconnue"));
}

TEST(UnitHistories, OfTheVirtualStockReadItsOwnFile) {
    Dossier dossier;
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    const auto found = [&] { unit_history::find(dossier.session, unit, unit_history::Source::Virtual); };
    EXPECT_EQ(refusalOf(found), QStringLiteral("Immatriculation inconnue"));
    Workspace workspace;
    Database virtualStock = workspace.open(dossier.session.path(DataFile::Virtuel));
    virtualStock.insert(dossier.unit(unit));
    EXPECT_EQ(refusalOf(found), QStringLiteral("(accepté)"));
}

TEST(Renumberings, RewriteADocumentEverywhereItIsNamed) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    SalesBook invoices(dossier.session, documentKind(QStringLiteral("FAC")));
    integration::integrate(invoices, test::newDocument(invoices), QStringLiteral("1"));
    dossier.document(QStringLiteral("CSG"), {units[1]}); // consignment note 000001: same number, other family
    dossier.document(QStringLiteral("LIV"), {units[2]});
    const Renumbering& ofInvoices = *renumbering::ofMenu(QStringLiteral("mnu_util_num_fac"));
    const Renumbering& ofNotes = *renumbering::ofMenu(QStringLiteral("mnu_util_num_liv"));

    for (const char* wrong : {"0", "abc", "1", "1234567", ""})
        EXPECT_EQ(refusalOf([&] {
                      renumbering::check(dossier.session, ofInvoices, QStringLiteral("1"), QString::fromLatin1(wrong));
                  }),
                  QStringLiteral("Numérotation impossible"))
            << wrong;
    EXPECT_EQ(
        refusalOf([&] { renumbering::check(dossier.session, ofInvoices, QStringLiteral("5"), QStringLiteral("77")); }),
        QStringLiteral("Numérotation impossible"));

    renumbering::renumber(dossier.session, ofInvoices, QStringLiteral("1"), QStringLiteral("77"));
    renumbering::renumber(dossier.session, ofNotes, QStringLiteral("1"), QStringLiteral("500"));
    Workspace workspace;
    Database vente = workspace.open(dossier.session.vente());
    const Record note = vente.find(strlive, strlive.fac_no == QStringLiteral("000500")).value();
    EXPECT_EQ(note[strlive.fac_blv], QStringLiteral("000077"));
    EXPECT_EQ(
        vente.count(strfacl, strfacl.fac_no == QStringLiteral("000077") && strfacl.fac_nbl == QStringLiteral("000500")),
        2);
    const Record sold = dossier.unit(units[0]);
    EXPECT_EQ(sold[strproduit.num_vte] + sold[strproduit.nbl_dep] + sold[strproduit.ref_vte],
              QStringLiteral("000077000077BL/000500"));
    EXPECT_EQ(dossier.unit(units[1])[strproduit.num_vte], QStringLiteral("000001"));
    EXPECT_EQ(dossier.unit(units[2])[strproduit.num_vte], QStringLiteral("000002"));
}

} // namespace molven

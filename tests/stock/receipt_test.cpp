#include "support/dossier.h"

#include "data/format.h"
#include "reference/articles.h"
#include "stock/units.h"

#include <QFile>

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

struct FaultCase {
    const char* reference;
    void (*spoil)(Receipt&);
    const char* message;
    const char* field;
};

Receipt& operator<<(Receipt& receipt, std::pair<QString Receipt::*, const char*> change) {
    receipt.*change.first = QString::fromUtf8(change.second);
    return receipt;
}

} // namespace

class ReceiptFaults : public testing::TestWithParam<FaultCase> {};

TEST_P(ReceiptFaults, AreToldOnTheirFieldAndWriteNothing) {
    const FaultCase& c = GetParam();
    Dossier dossier;
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Receipt receipt = Dossier::receipt(QString::fromLatin1(c.reference), 2);
    c.spoil(receipt);
    const auto call = [&] { receipts::receive(molven, dossier.session.rules(), receipt); };
    EXPECT_EQ(refusalOf(call), QString::fromUtf8(c.message));
    EXPECT_EQ(test::refusedField(call), QString::fromLatin1(c.field));
    EXPECT_EQ(molven.count(strproduit) + molven.count(strconform), 0);
}

INSTANTIATE_TEST_SUITE_P(
    ByField, ReceiptFaults,
    testing::Values(
        FaultCase{"ABSENT", [](Receipt&) {}, "Cet article n'existe pas", "ref_art"},
        FaultCase{"", [](Receipt&) {}, "Ces zones sont obligatoires en saisie", "ref_art"},
        FaultCase{"SCREW", [](Receipt&) {}, "référence non tenue en stock", "ref_art"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::depot, "999"); }, "Ce dépôt n'existe pas",
                  "num_dep"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::supplier, "77"); }, "Ce fournisseur n'existe pas",
                  "fou_cde"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::quantity, "0"); }, "Quantité incorrecte", "txtqte"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::quantity, "1,5"); }, "Quantité incorrecte",
                  "txtqte"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::deliveryDate, "31/02/2026"); },
                  "date livraison invalide", "dat_liv"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::plannedDate, "1/1/1"); },
                  "date prevue livraison invalide", "dat_dlv"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::orderDate, "99/99/9999"); },
                  "date commande invalide", "dat_cde"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::purchasePrice, ""); }, "Prix Achat obligatoire",
                  "pro_pac"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::lot, " "); }, "Le N° LOT est obligatoire en saisie",
                  "lot_art"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::sterilisationDate, "13/2026"); },
                  "date stérilisation incorrecte", "dat_ste"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::expiryDate, "00/2030"); },
                  "date péremption incorrecte", "dat_per"},
        FaultCase{"CUP", [](Receipt& r) { r << std::pair(&Receipt::certificate2, ""); },
                  "Les zones FABRIQUE sont obligatoires en saisie", "ino_cer"},
        FaultCase{"CUP", [](Receipt& r) { r << std::pair(&Receipt::pieces, "3"); },
                  "incohérence avec la quantité à entrer", "pie_art"},
        FaultCase{"CUP",
                  [](Receipt& r) { r << std::pair(&Receipt::conformity, "X") << std::pair(&Receipt::cause, "77"); },
                  "Cette cause n'existe pas", "fab_cau"},
        FaultCase{"GRAFT", [](Receipt& r) { r << std::pair(&Receipt::registerEntry, ""); },
                  "Les zones GREFFON sont obligatoires en saisie", "ino_cer"},
        FaultCase{"GRAFT", [](Receipt& r) { r << std::pair(&Receipt::registerEntry, "32/01/2026"); },
                  "date prélèvement incorrecte", "reg_art"}));

TEST(Receipts, NumberUnitsByMonthWhateverTheArticle) {
    Dossier dossier;
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 2), (QStringList{"26030001", "26030002"}));
    EXPECT_EQ(dossier.receive(QStringLiteral("CUP"), 1), QStringList{"26030003"});
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 1, QStringLiteral("01/04/2026")), QStringList{"26040001"});
    const Record unit = dossier.unit(QStringLiteral("26030003"));
    EXPECT_EQ(unit[strproduit.pro_ann] + unit[strproduit.tes_vte] + unit[strproduit.num_dep] + unit[strproduit.tri_liv],
              QStringLiteral("20N00120260305"));
    EXPECT_EQ(unit[strproduit.fab_con], QStringLiteral("O"));
}

TEST(Receipts, WeighTheAveragePurchasePriceByQuantity) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 3);
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Receipt dearer = Dossier::receipt(QStringLiteral("HIP"), 1);
    dearer.purchasePrice = QStringLiteral("75,01");
    receipts::receive(molven, dossier.session.rules(), dearer);
    const Record article = articles::find(molven, QStringLiteral("HIP")).value();
    EXPECT_EQ(article[strarticle.art_stk], Decimal(4));
    EXPECT_EQ(article[strarticle.art_dpa].toString(), QStringLiteral("75.01"));
    EXPECT_EQ(article[strarticle.art_pam].toString(), QStringLiteral("56.25")); // 225.01 / 4 = 56.2525
}

TEST(Receipts, StopAtTheLastNumberOfTheMonthInsteadOfEnteringTheNext) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 1);
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    molven.update(strproduit, {{strproduit.imm_art, QStringLiteral("26039998")}}, {});
    EXPECT_NE(refusalOf([&] {
                  receipts::receive(molven, dossier.session.rules(), Dossier::receipt(QStringLiteral("HIP"), 2));
              }),
              QStringLiteral("(accepté)"));
    EXPECT_EQ(molven.count(strproduit), 1);
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 1), QStringList{"26039999"});
}

TEST(Receipts, AbandonedHalfWayWriteNothing) {
    Dossier dossier;
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    EXPECT_EQ(refusalOf([&] {
                  receipts::receive(molven, dossier.session.rules(), Dossier::receipt(QStringLiteral("CUP"), 10),
                                    [](int done, int) { return done < 6; });
              }),
              QStringLiteral("Opération abandonnée"));
    EXPECT_EQ(molven.count(strproduit) + molven.count(strconform), 0);
    EXPECT_EQ(dossier.stock(QStringLiteral("CUP")), Decimal(0));
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 1), QStringList{"26030001"});
}

TEST(Receipts, TakeAnImposedNumberOnlyWhenAllOfTheRunAreFree) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 3);
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const auto impose = [&](const char* number, int quantity) {
        Receipt receipt = Dossier::receipt(QStringLiteral("HIP"), quantity);
        receipt.firstNumber = QString::fromLatin1(number);
        return refusalOf([&] { receipts::receive(molven, dossier.session.rules(), receipt); });
    };
    EXPECT_EQ(impose("26030003", 1), QStringLiteral("Cette immatriculation existe déjà"));
    for (const char* wrong : {"26139999", "26030000", "26039999", "95030001", "2603000A", "123456789"})
        EXPECT_EQ(impose(wrong, 2), QStringLiteral("Immatriculation incorrecte")) << wrong;
    EXPECT_EQ(impose("26029999", 1), QStringLiteral("(accepté)"));
    EXPECT_EQ(impose("5020001", 2), QStringLiteral("(accepté)"));
    EXPECT_EQ(dossier.unit(QStringLiteral("05020002"))[strproduit.pro_ann], QStringLiteral("20"));
    EXPECT_EQ(molven.count(strproduit), 6);
}

TEST(Receipts, OfOneInstallationRaiseTheYearByOne) {
    Dossier dossier;
    const QString offset = dossier.folder() + QStringLiteral("/quilde/");
    ASSERT_TRUE(QDir().mkpath(offset));
    ASSERT_TRUE(QFile::copy(dossier.session.molven(), offset + QStringLiteral("molven.mdb")));
    Workspace workspace;
    Database molven = workspace.open(offset + QStringLiteral("molven.mdb"));
    const auto receive = [&] {
        return receipts::receive(molven, dossier.session.rules(), Dossier::receipt(QStringLiteral("HIP"), 1)).first;
    };
    EXPECT_EQ(receive(), QStringLiteral("36031001"));
    EXPECT_EQ(receive(), QStringLiteral("36031002"));
}

TEST(Receipts, KeepSiteFieldsOnlyWhereTheSiteHasThem) {
    for (const auto& [company, kept] : {std::pair("CE", true), std::pair("MD", false)}) {
        Dossier dossier(QString::fromLatin1(company));
        Workspace workspace;
        Receipt receipt = Dossier::receipt(QStringLiteral("HIP"), 1);
        receipt.sterilisationIndex = QStringLiteral("B2");
        receipt.scannedEan = QStringLiteral("3760000000001XYZ");
        const auto created =
            receipts::receive(workspace.open(dossier.session.molven()), dossier.session.rules(), receipt);
        const Record unit = dossier.unit(created.first);
        EXPECT_EQ(unit[strproduit.ind_ste], kept ? QStringLiteral("B2") : QString()) << company;
        EXPECT_EQ(unit[strproduit.pro_ean], kept ? QStringLiteral("3760000000001") : QString()) << company;
    }
}

TEST(Units, ByTheirStateMayBeDeletedOrImplanted) {
    Dossier dossier;
    const QStringList numbers = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("LIV"), {numbers[0]});
    dossier.document(QStringLiteral("FAC"), {numbers[1]});
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const auto key = [&](int i) { return Immatriculation::fromText(numbers[i]); };
    const auto implant = [&](int i) {
        return refusalOf([&] {
            units::implant(molven, key(i), QStringLiteral("L'HERMITE"), QStringLiteral("1"),
                           QStringLiteral("12/03/2026"));
        });
    };
    for (const int i : {0, 1})
        EXPECT_EQ(refusalOf([&] { units::remove(molven, key(i)); }),
                  QStringLiteral("impossible de supprimer cette immatriculation"));
    EXPECT_EQ(implant(0), QStringLiteral("Impossible..cette immatriculation n'est pas vendue"));
    EXPECT_EQ(implant(2), QStringLiteral("Impossible..cette immatriculation n'est pas vendue"));
    EXPECT_EQ(implant(1), QStringLiteral("(accepté)"));
    EXPECT_EQ(dossier.unit(numbers[1])[strproduit.reg_pat], QStringLiteral("L'HERMITE"));
    units::remove(molven, key(2));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(1));
}

namespace {

struct SituationCase {
    const char* state;
    const char* depot;
    const char* client;
    const char* lastDepotDocument;
    const char* place;
    const char* document;
};

} // namespace

class Situations : public testing::TestWithParam<SituationCase> {};

TEST_P(Situations, AreToldInWords) {
    const SituationCase& c = GetParam();
    Record unit(strproduit);
    unit[strproduit.tes_vte] = QString::fromUtf8(c.state);
    unit[strproduit.num_dep] = QString::fromUtf8(c.depot);
    unit[strproduit.clt_vte] = QString::fromUtf8(c.client);
    unit[strproduit.nbl_dep] = QString::fromUtf8(c.lastDepotDocument);
    unit[strproduit.num_vte] = QStringLiteral("000012");
    unit[strproduit.dat_vte] = QStringLiteral("05/03/2026");
    unit[strproduit.stk_anc_cod] = QStringLiteral("ANC1");
    const units::Situation situation = units::situation(unit, CompanyRules(QStringLiteral("MD"), {}));
    EXPECT_EQ(situation.place, QString::fromUtf8(c.place));
    EXPECT_EQ(situation.document, QString::fromUtf8(c.document));
}

INSTANTIATE_TEST_SUITE_P(
    ByState, Situations,
    testing::Values(SituationCase{"N", "001", "", "", "Produit stocké au dépôt : 001", ""},
                    SituationCase{"N", "XXX", "000003", "", "Produit retourné au fournisseur 000003 Dépôt : XXX",
                                  "Bon de retour N° 000012 du 05/03/2026"},
                    SituationCase{"N", "001", "000003", "AVOIR", "Produit stocké au dépôt : 001",
                                  "Reprise au client, Avoir N° 000012 du 05/03/2026"},
                    SituationCase{"N", "101", "000003", "000012", "Produit transféré au client 000003 Dépôt : 101",
                                  "Bon de Transfert N° 000012 du 05/03/2026"},
                    SituationCase{"L", "101", "000003", "", "Produit livré au client 000003 Dépôt : 101",
                                  "Bon de Livraison N° 000012 du 05/03/2026"},
                    SituationCase{"O", "101", "000003", "", "Produit vendu au client 000003 Dépôt : 101",
                                  "Facture N° 000012 du 05/03/2026"},
                    SituationCase{"O", "XXX", "000003", "", "Produit retourné au fournisseur 000003 Dépôt : XXX",
                                  "Bon de retour N° 000012 du 05/03/2026"},
                    SituationCase{"A", "A01", "", "", "Ancillaire : ANC1 stocké au dépôt : A01", ""},
                    SituationCase{"A", "101", "000003", "", "Ancillaire : ANC1 en dépôt chez le client 000003", ""}));

TEST(Immatriculations, BelongToTheirCentury) {
    EXPECT_EQ(Immatriculation::fromText(QStringLiteral("99120001")).century(), QStringLiteral("19"));
    EXPECT_EQ(Immatriculation::fromText(QStringLiteral("1010001")).number(), QStringLiteral("01010001"));
    EXPECT_EQ(Immatriculation::fromText(QStringLiteral("01010001")).century(), QStringLiteral("20"));
    EXPECT_FALSE(Immatriculation::fromText(QStringLiteral("26-30001")).isValid());
}

TEST(DepotFamilies, FollowTheDepotsOfUnits) {
    Dossier dossier;
    const QStringList numbers = dossier.receive(QStringLiteral("HIP"), 2);
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    molven.update(strproduit, {{strproduit.num_dep, QStringLiteral("101")}}, strproduit.imm_art == numbers[1]);
    EXPECT_EQ(units::updateDepotFamilies(molven, molven), 1);
    EXPECT_EQ(dossier.unit(numbers[1])[strproduit.fam_dep], QStringLiteral("EST"));
    EXPECT_EQ(units::updateDepotFamilies(molven, molven), 0);
}

} // namespace molven

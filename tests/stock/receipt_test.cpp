#include "support/dossier.h"

#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "sales/document_tables.h"
#include "sales/unit_removal.h"
#include "stock/ancillary_sets.h"
#include "stock/labels.h"
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
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    Record cause(strparam);
    cause[strparam.cod_par] = QStringLiteral("Y");
    cause[strparam.num_par] = QStringLiteral("01");
    files.molven.insert(cause);
    Receipt receipt = Dossier::receipt(QString::fromLatin1(c.reference), 2);
    c.spoil(receipt);
    const auto call = [&] { receipts::receive(files, dossier.session.rules(), receipt); };
    EXPECT_EQ(refusalOf(call), QString::fromUtf8(c.message));
    EXPECT_EQ(test::refusedField(call), QString::fromLatin1(c.field));
    EXPECT_EQ(files.molven.count(strproduit) + files.molven.count(strconform), 0);
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
        FaultCase{"CUP",
                  [](Receipt& r) { r << std::pair(&Receipt::conformity, "X") << std::pair(&Receipt::cause, "01"); },
                  "Cette cause n'existe pas", "fab_cau"}, // known among the derogated only
        FaultCase{"CUP", [](Receipt& r) { r << std::pair(&Receipt::conformity, "Z"); }, "Cette cause n'existe pas",
                  "fab_cau"},
        FaultCase{"CUP", [](Receipt& r) { r << std::pair(&Receipt::conformity, "Q"); }, "Taper O, X, Y ou Z !!",
                  "fab_con"},
        FaultCase{"CUP", [](Receipt& r) { r << std::pair(&Receipt::pieces, "1,5"); }, "Nombre de pièces incorrect",
                  "pie_art"},
        FaultCase{"GRAFT", [](Receipt& r) { r << std::pair(&Receipt::pieces, "AB"); }, "Nombre de pièces incorrect",
                  "pie_art"},
        FaultCase{"HIP", [](Receipt& r) { r << std::pair(&Receipt::purchasePrice, "0"); }, "Prix Achat obligatoire",
                  "pro_pac"},
        FaultCase{"HIP", [](Receipt& r) { r.supplierSerials = QStringList{"S1"}; },
                  "Saisir un N° de série par produit ou aucun : 1 pour une quantité de 2", "fou_imm"},
        FaultCase{"HIP",
                  [](Receipt& r) {
                      r.supplierSerials = QStringList{"S1", "s1"};
                  },
                  "N° de série saisi deux fois : s1", "fou_imm"},
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
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    Receipt dearer = Dossier::receipt(QStringLiteral("HIP"), 1);
    dearer.purchasePrice = QStringLiteral("75,01");
    receipts::receive(files, dossier.session.rules(), dearer);
    const Record article = articles::find(files.molven, QStringLiteral("HIP")).value();
    EXPECT_EQ(article[strarticle.art_stk], Decimal(4));
    EXPECT_EQ(article[strarticle.art_dpa].toString(), QStringLiteral("75.01"));
    EXPECT_EQ(article[strarticle.art_pam].toString(), QStringLiteral("56.25")); // 225.01 / 4 = 56.2525
}

TEST(Receipts, StopAtTheLastNumberOfTheMonthInsteadOfEnteringTheNext) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 1);
    Workspace workspace;
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    Database molven = files.molven;
    molven.update(strproduit, {{strproduit.imm_art, QStringLiteral("26039998")}}, {});
    EXPECT_NE(refusalOf([&] {
                  receipts::receive(files, dossier.session.rules(), Dossier::receipt(QStringLiteral("HIP"), 2));
              }),
              QStringLiteral("(accepté)"));
    EXPECT_EQ(molven.count(strproduit), 1);
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 1), QStringList{"26039999"});
}

TEST(Receipts, AbandonedHalfWayWriteNothing) {
    Dossier dossier;
    Workspace workspace;
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    Database molven = files.molven;
    EXPECT_EQ(refusalOf([&] {
                  receipts::receive(files, dossier.session.rules(), Dossier::receipt(QStringLiteral("CUP"), 10),
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
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    Database molven = files.molven;
    const auto impose = [&](const char* number, int quantity) {
        Receipt receipt = Dossier::receipt(QStringLiteral("HIP"), quantity);
        receipt.firstNumber = QString::fromLatin1(number);
        return refusalOf([&] { receipts::receive(files, dossier.session.rules(), receipt); });
    };
    EXPECT_EQ(impose("26030003", 1), QStringLiteral("Cette immatriculation existe déjà"));
    for (const char* wrong : {"26139999", "26030000", "26039999", "95030001", "2603000A", "123456789"})
        EXPECT_EQ(impose(wrong, 2), QStringLiteral("Immatriculation incorrecte")) << wrong;
    Receipt mistyped = Dossier::receipt(QStringLiteral("HIP"), 1);
    mistyped.deliveryDate = QStringLiteral("05/03/1995");
    EXPECT_EQ(refusalOf([&] { receipts::receive(files, dossier.session.rules(), mistyped); }),
              QStringLiteral("date livraison invalide"))
        << "95030001 would be read as a number of the last century";
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
    const UnitFiles files{workspace.open(offset + QStringLiteral("molven.mdb")),
                          {workspace.open(dossier.session.historic())}};
    const auto receive = [&] {
        return receipts::receive(files, dossier.session.rules(), Dossier::receipt(QStringLiteral("HIP"), 1)).first;
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
            receipts::receive(openUnitFiles(workspace, dossier.session), dossier.session.rules(), receipt);
        const Record unit = dossier.unit(created.first);
        EXPECT_EQ(unit[strproduit.ind_ste], kept ? QStringLiteral("B2") : QString()) << company;
        EXPECT_EQ(unit[strproduit.pro_ean], kept ? QStringLiteral("3760000000001") : QString()) << company;
    }
}

TEST(Receipts, PriceAUnitInItsOwnBasis) {
    Dossier dossier;
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    EXPECT_EQ(dossier.unit(dossier.receive(QStringLiteral("HIP"), 1).first())[strproduit.pro_vte], Decimal(100));
    molven.update(strarticle, {{strarticle.art_tar, QStringLiteral("T")}}, {});
    EXPECT_EQ(dossier.unit(dossier.receive(QStringLiteral("HIP"), 1).first())[strproduit.pro_vte],
              *Decimal::parse(QStringLiteral("105.50")));
}

TEST(Receipts, GiveEachUnitASerialThatNoOtherOfItsReferenceEverHad) {
    Dossier dossier;
    Workspace workspace;
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    const auto receive = [&](const char* supplierReference, const QStringList& serials) {
        Receipt receipt = Dossier::receipt(QStringLiteral("HIP"), static_cast<int>(serials.size()));
        receipt.supplierReference = QString::fromLatin1(supplierReference);
        receipt.supplierSerials = serials;
        return refusalOf([&] { receipts::receive(files, dossier.session.rules(), receipt); });
    };
    EXPECT_EQ(receive("F-1", {"S1", "S2"}), QStringLiteral("(accepté)"));
    EXPECT_EQ(dossier.unit(QStringLiteral("26030002"))[strproduit.fou_imm], QStringLiteral("S2"));
    EXPECT_EQ(receive("F-1", {"S3", "s2"}),
              QStringLiteral("Le N° de série S2 est déjà celui de l'immatriculation 26030002"));
    EXPECT_EQ(receive("F-2", {"S2"}), QStringLiteral("(accepté)"));
    files.archives.first().insert(dossier.unit(QStringLiteral("26030001")));
    files.molven.remove(strproduit, strproduit.imm_art == QStringLiteral("26030001"));
    EXPECT_EQ(receive("F-1", {"S1"}), QStringLiteral("Le N° de série S1 est déjà celui de l'immatriculation 26030001"));
}

TEST(Receipts, DrawNoNumberOfAnArchivedUnit) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 2);
    Workspace workspace;
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    files.archives.first().insert(dossier.unit(QStringLiteral("26030002")));
    files.molven.remove(strproduit, strproduit.imm_art == QStringLiteral("26030002"));
    Receipt imposed = Dossier::receipt(QStringLiteral("HIP"), 1);
    imposed.firstNumber = QStringLiteral("26030002");
    EXPECT_EQ(refusalOf([&] { receipts::receive(files, dossier.session.rules(), imposed); }),
              QStringLiteral("Cette immatriculation existe déjà"));
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 1), QStringList{"26030003"});
}

TEST(Receipts, EnteredAgainKeepWhatOnlyTheFirstEntryDecides) {
    Dossier dossier;
    const QString number = dossier.receive(QStringLiteral("CUP"), 3).first();
    Workspace workspace;
    UnitFiles files = openUnitFiles(workspace, dossier.session);
    Receipt receipt = Dossier::receipt(QStringLiteral("CUP"), 1);
    receipt.pieces = QStringLiteral("3"); // as counted for the three
    receipt.depot = QStringLiteral("101");
    receipt.conformity = QStringLiteral("Z");
    receipt.supplierSerials = QStringList{"S1"};
    const Record before = dossier.unit(number);
    receipts::change(files, dossier.session.rules(), receipt, before);
    const Record unit = dossier.unit(number);
    EXPECT_EQ(unit[strproduit.num_dep] + unit[strproduit.fam_dep] + unit[strproduit.fab_con] + unit[strproduit.fou_imm],
              QStringLiteral("101ESTOS1"));
    receipts::change(files, dossier.session.rules(), receipt, unit); // its own serial is no other's
    EXPECT_EQ(test::dataErrorOf([&] { receipts::change(files, dossier.session.rules(), receipt, before); }),
              DataError::RecordChanged);
    receipt.pieces = QStringLiteral("beaucoup");
    EXPECT_EQ(refusalOf([&] { receipts::change(files, dossier.session.rules(), receipt, dossier.unit(number)); }),
              QStringLiteral("Nombre de pièces incorrect"));
}

TEST(Units, ByTheirStateMayBeDeletedOrImplanted) {
    Dossier dossier;
    const QStringList numbers = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("LIV"), {numbers[0]});
    dossier.document(QStringLiteral("FAC"), {numbers[1]});
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const auto implant = [&](int i) {
        return refusalOf([&] {
            units::implant(molven, dossier.unit(numbers[i]),
                           {QStringLiteral("L'HERMITE"), QStringLiteral("1"), QStringLiteral("12/03/2026")});
        });
    };
    for (const int i : {0, 1})
        EXPECT_EQ(refusalOf([&] { units::remove(molven, Immatriculation::fromText(numbers[i])); }),
                  QStringLiteral("impossible de supprimer cette immatriculation"));
    EXPECT_EQ(implant(0), QStringLiteral("Impossible..cette immatriculation n'est pas vendue"));
    EXPECT_EQ(implant(2), QStringLiteral("Impossible..cette immatriculation n'est pas vendue"));
    EXPECT_EQ(implant(1), QStringLiteral("(accepté)"));
    EXPECT_EQ(dossier.unit(numbers[1])[strproduit.reg_pat], QStringLiteral("L'HERMITE"));
}

TEST(Units, KeepTheImplantationThatAnotherWorkstationEnteredFirst) {
    Dossier dossier;
    const QString number = dossier.receive(QStringLiteral("HIP"), 1).first();
    dossier.document(QStringLiteral("FAC"), {number});
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const Record readByBoth = dossier.unit(number);
    units::implant(molven, readByBoth, {QStringLiteral("DUPONT"), QStringLiteral("1"), QStringLiteral("12/03/2026")});
    const auto second = [&](const Record& read, const char* hospital) {
        return refusalOf([&] {
            units::implant(molven, read,
                           {QStringLiteral("MARTIN"), QString::fromLatin1(hospital), QStringLiteral("13/03/2026")});
        });
    };
    EXPECT_EQ(second(readByBoth, "2"),
              QStringLiteral("Le patient a été modifié par un autre poste : DUPONT, client 000001, le 12/03/2026"));
    EXPECT_EQ(second(dossier.unit(number), "77"), QStringLiteral("Ce code n'existe pas"));
    EXPECT_EQ(dossier.unit(number)[strproduit.reg_pat], QStringLiteral("DUPONT"));
    EXPECT_EQ(second(dossier.unit(number), "2"), QStringLiteral("(accepté)"));
}

TEST(Units, TakeTheirHistoryAndTheirLabelWithThem) {
    Dossier dossier;
    const QString number = dossier.receive(QStringLiteral("CUP"), 1).first();
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Database tri = workspace.open(dossier.session.tri());
    labels::fill(molven, tri, dossier.session.rules(), molven.select(strproduit));
    unit_removal::remove(dossier.session, Immatriculation::fromText(number));
    EXPECT_EQ(molven.count(strproduit) + molven.count(strconform) + tri.count(etiq), 0);
    EXPECT_EQ(dossier.stock(QStringLiteral("CUP")), Decimal(0));
}

namespace {

struct PaperCase {
    DataFile file;
    const DocumentLines& lines;
};

} // namespace

class UnitsOnPaper : public testing::TestWithParam<PaperCase> {};

TEST_P(UnitsOnPaper, AreNeverDeleted) {
    Dossier dossier;
    const QString number = dossier.receive(QStringLiteral("HIP"), 1).first();
    {
        Workspace workspace;
        Record line(GetParam().lines);
        line[GetParam().lines.fac_imm] = number;
        workspace.open(dossier.session.path(GetParam().file)).insert(line);
    }
    EXPECT_EQ(refusalOf([&] { unit_removal::remove(dossier.session, Immatriculation::fromText(number)); }),
              QStringLiteral("impossible de supprimer cette immatriculation"));
    EXPECT_EQ(dossier.unit(number)[strproduit.tes_vte], state::InStock);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(1));
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, UnitsOnPaper,
                         testing::Values(PaperCase{DataFile::Vente, strbtrl}, PaperCase{DataFile::Vente, strfacl},
                                         PaperCase{DataFile::Historic, strlivl}, PaperCase{DataFile::Historic, strcsgl},
                                         PaperCase{DataFile::Proforma, strfacl}, PaperCase{DataFile::Ostrane, strfacl},
                                         PaperCase{DataFile::Virtuel, strbtrl}));

TEST(Sets, TakeUnitsAtTheMainDepotOnly) {
    Dossier dossier;
    const QStringList numbers = dossier.receive(QStringLiteral("HIP"), 3);
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Database sets = workspace.open(dossier.session.path(DataFile::Ancillaire));
    Record type(strancillaire), component(strnomenclature);
    type[strancillaire.anc_code] = QStringLiteral("KIT");
    component[strnomenclature.anc_code] = QStringLiteral("KIT");
    component[strnomenclature.anc_lg] = QStringLiteral("001");
    sets.insert(type);
    sets.insert(component);
    molven.update(strproduit, {{strproduit.fam_dep, QStringLiteral("EST")}}, {});
    const QString serial = ancillary_sets::create(sets, QStringLiteral("KIT"));
    const auto place = [&](int i) {
        return refusalOf([&] { ancillary_sets::place({molven, sets, dossier.session.rules()}, serial, numbers[i]); });
    };
    EXPECT_EQ(place(0), QStringLiteral("(accepté)"));
    const Record placed = dossier.unit(numbers[0]);
    EXPECT_EQ(placed[strproduit.tes_vte] + placed[strproduit.fam_dep], state::InSet) << "sets' depot has no family";
    EXPECT_EQ(place(0), QStringLiteral("Aucun produit en stock pour la référence HIP"));
    sets.update(strstock, {{strstock.stk_num_dep, QStringLiteral("000001")}}, {});
    EXPECT_EQ(place(1), QStringLiteral("Impossible, cet ancillaire n'est plus au dépôt principal"));
    EXPECT_EQ(sets.count(strstock), 2);
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
    EXPECT_EQ(units::updateDepotFamilies(dossier.session), 1);
    EXPECT_EQ(dossier.unit(numbers[1])[strproduit.fam_dep], QStringLiteral("EST"));
    EXPECT_EQ(units::updateDepotFamilies(dossier.session), 0);
}

} // namespace molven

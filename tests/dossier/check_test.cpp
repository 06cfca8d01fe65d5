#include "support/dossier.h"
#include "support/faults.h"

#include "data/digest.h"
#include "reference/party_tables.h"
#include "sales/document_tables.h"
#include "stock/movements.h"
#include "stock/units.h"

#include <QFile>

namespace molven {

using test::Dossier;
using test::faultsOf;
using test::plant;
using test::Planted;

namespace {

std::string joined(const QStringList& texts) { return texts.join(u'\n').toStdString(); }

/// A dossier whose invoice "000001" sold "26030001" and "26030002", with "26030003" in stock.
class Sold : public Dossier {
public:
    Sold() {
        const QStringList units = receive(QStringLiteral("HIP"), 3);
        document(QStringLiteral("FAC"), units.first(2));
    }
};

/// The same, with the invoice and its units archived.
class Archived : public Sold {
public:
    Archived() {
        Workspace workspace;
        Database molven = workspace.open(session.molven()), vente = workspace.open(session.vente()),
                 historic = workspace.open(session.historic());
        Transaction transaction(workspace, QStringLiteral("Archivage"));
        move(vente, historic, strface, {});
        move(vente, historic, strfacl, {});
        move(molven, historic, strproduit, strproduit.tes_vte == state::Sold);
        transaction.commit();
    }

private:
    static void move(Database from, Database to, const Table& table, const Criterion& criterion) {
        for (const Record& record : from.select(table, criterion)) to.insert(record);
        from.remove(table, criterion);
    }
};

} // namespace

class Unmended : public testing::TestWithParam<Planted> {};

TEST_P(Unmended, IsToldAndNotCoveredUp) {
    Sold dossier;
    plant(dossier.session, GetParam().file, GetParam().sql);
    const QStringList before = faultsOf(dossier.session);
    EXPECT_TRUE(before.contains(QString::fromUtf8(GetParam().told))) << joined(before);
    EXPECT_TRUE(check::repair(dossier.session).isEmpty());
    EXPECT_EQ(faultsOf(dossier.session), before);
}

INSTANTIATE_TEST_SUITE_P(
    Dossiers, Unmended,
    testing::Values(
        Planted{"line", DataFile::Vente,
                "update strfacl set fac_px=1,fac_pv=1,fac_ht=1,fac_ttc=1.06 where fac_lg='001'",
                "facture 000001 : totaux autres que ceux des lignes : TTC 189,90 pour 96,01"},
        Planted{"lines_lost", DataFile::Vente, "delete from strfacl", "facture 2026/000001 : aucune ligne"},
        Planted{"line_lost", DataFile::Vente, "delete from strfacl where fac_lg='002'",
                "Ligne de la facture 2026/000001/002 : supprimé hors du programme"},
        Planted{"line_twice", DataFile::Vente, "insert into strfacl select * from strfacl where fac_lg='001'",
                "facture 2026/000001 : ligne 001 en double"},
        Planted{"discount", DataFile::Vente, "update strface set fac_rem=50",
                "facture 000001 : totaux autres que ceux des lignes : TTC 189,90 pour 94,95"},
        Planted{"unit_lost", DataFile::Molven, "delete from strproduit where imm_art='26030003'",
                "HIP : art_stk = 1 pour 0 unités"},
        Planted{"unit_unsold", DataFile::Molven, "update strproduit set tes_vte='N' where imm_art='26030002'",
                "HIP : art_stk = 1 pour 2 unités"},
        Planted{"stock_of_movements", DataFile::Molven, "update strarticle set art_stk=7 where art_ref='SCREW'",
                "SCREW : art_stk = 7 pour 0 d'après les mouvements et les documents"},
        Planted{"movement_without_stock", DataFile::Molven,
                "insert into strmvtstk (ref_stk,dat_stk,tri_stk,eta_stk,qte_stk) values "
                "('SCREW','05/03/2026','20260305','E',2)",
                "SCREW : art_stk = 0 pour 2 d'après les mouvements et les documents"},
        Planted{"movement_of_units", DataFile::Stocks,
                "insert into strmvtstk (ref_stk,dat_stk,tri_stk,eta_stk,qte_stk) values "
                "('HIP','05/03/2026','20260305','I',2)",
                "HIP : mouvement d'un article qui n'est pas tenu par quantité"},
        Planted{"journal_lost", DataFile::Molven, "delete from strjournal where rowid>10",
                "Unité 20/26030003 : ajouté hors du programme"}),
    [](const auto& test) { return std::string(test.param.name); });

class ArchivedBreakages : public testing::TestWithParam<Planted> {};

TEST_P(ArchivedBreakages, AreReported) {
    Archived dossier;
    ASSERT_EQ(faultsOf(dossier.session), QStringList());
    plant(dossier.session, DataFile::Historic, GetParam().sql);
    const QStringList found = faultsOf(dossier.session);
    EXPECT_TRUE(found.contains(QString::fromUtf8(GetParam().told))) << joined(found);
}

INSTANTIATE_TEST_SUITE_P(
    Dossiers, ArchivedBreakages,
    testing::Values(
        Planted{"state", DataFile::Historic, "update strproduit set tes_vte='N' where imm_art='26030001'",
                "26030001 : vendue par le document 000001, mais pas dans cet état"},
        Planted{"client", DataFile::Historic, "update strproduit set clt_vte='000002' where imm_art='26030001'",
                "26030001 : client ou date autres que ceux de facture 000001"},
        Planted{"depot", DataFile::Historic, "update strproduit set num_dep='102' where imm_art='26030001'",
                "26030001 : dépôt 102 pour 101 sur facture 000001"},
        Planted{"document", DataFile::Historic, "update strproduit set num_vte='000009' where imm_art='26030001'",
                "26030001 : vendue sans ligne sur la facture ou le bon de consignation 000009"},
        Planted{"patient", DataFile::Historic, "update strproduit set reg_pat='' where imm_art='26030001'",
                "26030001 : patient absent : D'ALMEIDA Hélène sur facture 000001"},
        Planted{"patient_of_document", DataFile::Historic, "update strface set fac_pat='DURAND'",
                "26030001 : patient D'ALMEIDA Hélène, DURAND sur facture 000001"},
        Planted{"lot", DataFile::Historic, "update strproduit set lot_art='AUTRE' where imm_art='26030001'",
                "26030001 : lot « AUTRE », « LOT-1 » sur facture 000001"},
        Planted{"lot_of_line", DataFile::Historic, "update strfacl set fac_id1='N° Lot : AUTRE' where fac_lg='001'",
                "26030001 : lot « LOT-1 », « AUTRE » sur facture 000001"},
        Planted{"date", DataFile::Historic, "update strproduit set dat_liv='31/02/2026' where imm_art='26030001'",
                "26030001 : Date de réception : date impossible « 31/02/2026 »"},
        Planted{"sold_twice", DataFile::Historic, "update strfacl set fac_imm='26030001' where fac_lg='002'",
                "26030001 : vendue deux fois : 000001 000001"},
        Planted{"unit_lost", DataFile::Historic, "delete from strproduit where imm_art='26030001'",
                "26030001 : immatriculation absente, portée par facture 000001"},
        Planted{"document_lost", DataFile::Historic, "delete from strface",
                "26030001 : vendue sans ligne sur la facture ou le bon de consignation 000001"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Dossiers, ArchivedByAnotherToolAreSound) {
    const Sold dossier;
    {
        Workspace workspace;
        Database vente = workspace.open(dossier.session.vente());
        workspace.open(dossier.session.historic());
        for (const char* sql : {"insert into f1.strface select * from main.strface", "delete from main.strface",
                                "insert into f1.strfacl select * from main.strfacl", "delete from main.strfacl"})
            vente.firstValue(QString::fromUtf8(sql));
    }
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Dossiers, OlderThanTheirJournalAreSoundAndAnsweredForFromThenOn) {
    const Sold dossier;
    for (const DataFile file : {DataFile::Molven, DataFile::Vente})
        for (const char* sql : {"delete from strjournal", "pragma user_version=2"}) plant(dossier.session, file, sql);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    plant(dossier.session, DataFile::Molven, "delete from strproduit where imm_art='26030003'");
    EXPECT_TRUE(faultsOf(dossier.session).contains(QStringLiteral("Unité 20/26030003 : supprimé hors du programme")));
}

TEST(Dossiers, OfWhichAnIndexLostRecordsAreReadAllTheSameAndMended) {
    const Sold dossier;
    const auto declare = [&dossier](const char* ending) {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        molven.firstValue(QStringLiteral("pragma writable_schema=on"));
        molven.firstValue(QStringLiteral("update sqlite_master set sql='CREATE INDEX strproduit_6 on strproduit "
                                         "(lot_art)%1' where name='strproduit_6'")
                              .arg(QString::fromLatin1(ending)));
    };
    declare(" where imm_art is null");
    plant(dossier.session, DataFile::Molven, "reindex strproduit_6");
    declare("");
    EXPECT_EQ(faultsOf(dossier.session), QStringList("strproduit : index strproduit_6 incomplet"));
    EXPECT_EQ(check::repair(dossier.session).size(), 1);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Dossiers, WhoseUnitCameBackAndWasCorrectedAreSound) {
    Sold dossier;
    dossier.document(QStringLiteral("AVO"), {QStringLiteral("26030001")});
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const Record before = dossier.unit(QStringLiteral("26030001"));
    Record corrected = before;
    corrected[strproduit.lot_art] = QStringLiteral("CORRIGE");
    units::change(molven, corrected, before);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    // A note may bear the number of the credit note: each family has its own.
    for (const QString& unit : {QStringLiteral("26030003"), QStringLiteral("26030001")})
        dossier.document(QStringLiteral("LIV"), {unit});
    EXPECT_EQ(dossier.unit(QStringLiteral("26030001")).value(strproduit.num_vte), QStringLiteral("000002"));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Dossiers, WhosePatientWasReplacedOnTheUnitAreSound) {
    Sold dossier;
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const Record unit = dossier.unit(QStringLiteral("26030001"));
    units::Implantation implantation = units::implantationOf(unit);
    implantation.patient = QStringLiteral("MARTIN Louis");
    units::implant(molven, unit, implantation);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Dossiers, AreSoundAgainOnceTheProgramPutAValueRight) {
    const Sold dossier;
    plant(dossier.session, DataFile::Molven, "update strclient set clt_nom='INTRUS' where clt_cod='000001'");
    EXPECT_EQ(faultsOf(dossier.session), QStringList("Client 000001 : changé hors du programme : Nom"));
    Workspace workspace;
    workspace.open(dossier.session.molven())
        .update(strclient, {{strclient.clt_nom, QStringLiteral("CLINIQUE")}},
                strclient.clt_cod == QStringLiteral("000001"));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Dossiers, WithTwoMovementsOfOneDayOfWhichOneWasCorrectedAndOneDeletedAreSound) {
    const Dossier dossier;
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    for (const int quantity : {1, 2, 5}) {
        Record movement(strmvtstk);
        movement[strmvtstk.uid_stk] = QString::number(quantity);
        movement[strmvtstk.ref_stk] = QStringLiteral("SCREW");
        movement[strmvtstk.dat_stk] = QStringLiteral("05/03/2026");
        movement[strmvtstk.tri_stk] = QStringLiteral("20260305");
        movement[strmvtstk.eta_stk] = movement::Inventory;
        movement[strmvtstk.qte_stk] = Decimal(quantity);
        molven.insert(movement);
    }
    molven.update(strmvtstk, {{strmvtstk.qte_stk, QStringLiteral("3")}}, strmvtstk.qte_stk == Decimal(2));
    molven.remove(strmvtstk, strmvtstk.qte_stk == Decimal(5));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    plant(dossier.session, DataFile::Molven, "update strmvtstk set qte_stk=4 where qte_stk=3");
    EXPECT_NE(faultsOf(dossier.session), QStringList());
}

TEST(Digest, TellsTheFieldsOfEveryTableApart) {
    for (const CatalogueEntry& entry : catalogue())
        for (const Table* table : tablesOf(entry.file)) {
            QSet<digest::Mark> marks;
            for (const Field* field : table->fields()) marks.insert(digest::markOf(*field));
            EXPECT_EQ(marks.size(), table->fields().size()) << table->name.toStdString();
        }
}

TEST(Digest, OfANumberDoesNotDependOnHowItIsWritten) {
    const Number& price = strproduit.pro_vte;
    for (const auto& [one, same] : {std::pair("12.50", "12.5"), std::pair("007", "7"), std::pair("-0", "0.00"),
                                    std::pair("1.0e-04", "0.0001"), std::pair("-3.10", "-3.1")})
        EXPECT_EQ(digest::markOf(price, QString::fromUtf8(one)), digest::markOf(price, QString::fromUtf8(same))) << one;
    EXPECT_NE(digest::markOf(price, u"1"), digest::markOf(price, u"10"));
    EXPECT_NE(digest::markOf(price, u"0"), digest::markOf(price, u""));
    EXPECT_NE(digest::markOf(strproduit.lot_art, u"1.0"), digest::markOf(strproduit.lot_art, u"1"));
}

} // namespace molven

#include "support/dossier.h"
#include "support/faults.h"
#include "support/processes.h"

#include "data/journal_tables.h"
#include "dossier/creation.h"
#include "dossier/demo.h"
#include "dossier/staging.h"
#include "reference/articles.h"
#include "reference/parameter_tables.h"
#include "reference/seller.h"
#include "reference/seller_tables.h"
#include "sales/integration.h"
#include "shell/folder_files.h"
#include "shell/tables.h"
#include "stock/units.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <thread>

namespace molven {

using test::Dossier;
using test::faultsOf;
using test::Planted;
using test::refusalOf;

namespace {

QByteArray contentOf(const Session& session) {
    QCryptographicHash sum(QCryptographicHash::Sha1);
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    const auto add = [&sum](Database file, const Table& table) {
        for (const Record& record : file.select(table))
            for (const Field* field : table.fields())
                if (field->name != strlive.fac_uid.name) sum.addData(record.value(*field).toUtf8() + '\n');
    };
    add(molven, strproduit);
    add(molven, strarticle);
    add(vente, strfacl);
    add(vente, strlive);
    return sum.result();
}

Session demoDossier(const QTemporaryDir& folder, unsigned seed) {
    return demo::create(folder.path(), QStringLiteral("CE"), {300, seed});
}

} // namespace

class Breakages : public testing::TestWithParam<Planted> {};

TEST_P(Breakages, AreReported) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 5);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    dossier.document(QStringLiteral("FAC"), {units[1]});
    dossier.document(QStringLiteral("BTR"), {units[4]});
    SalesBook invoices(dossier.session, documentKind(QStringLiteral("FAC")));
    dossier.document(QStringLiteral("LIV"), {units[2]});
    integration::integrate(invoices, test::newDocument(invoices), QStringLiteral("2"));
    ASSERT_TRUE(check::run(dossier.session).isEmpty());
    test::plant(dossier.session, GetParam().file, GetParam().sql);
    const QStringList told = faultsOf(dossier.session);
    EXPECT_TRUE(told.contains(QString::fromUtf8(GetParam().told))) << told.join(u'\n').toStdString();
}

TEST(Dossiers, AreMendedWhereThereIsOneRightAnswer) {
    Dossier dossier;
    dossier.document(QStringLiteral("FAC"), dossier.receive(QStringLiteral("HIP"), 2));
    {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        Database vente = workspace.open(dossier.session.vente());
        articles::moveStock(molven, QStringLiteral("HIP"), Decimal(7));
        vente.update(strface, {{strface.fac_ttc, QStringLiteral("1")}}, {});
        molven.firstValue(QStringLiteral("drop index strproduit_1"));
        molven.firstValue(QStringLiteral("create index strproduit_1 on strproduit (pro_ann,imm_art)"));
    }
    QStringList kinds;
    for (const check::Fault& fault : check::run(dossier.session)) {
        kinds.append(fault.kind->name);
        EXPECT_TRUE(fault.kind->isMended);
    }
    EXPECT_EQ(kinds, (QStringList{"index", "totaux", "stocks"}));
    EXPECT_EQ(check::repair(dossier.session).size(), 3);
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
    EXPECT_TRUE(check::repair(dossier.session).isEmpty());
}

TEST(Dossiers, OfSeveralUsersHaveASeriesOfNumbersEach) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const Session shared = dossier.session;
    Session own = shared;
    own.chemin_util = shared.chemin_base + QStringLiteral("DU/");
    ASSERT_TRUE(QDir().mkpath(own.chemin_util));
    for (const DataFile file : {DataFile::Vente, DataFile::Blent, DataFile::Proforma, DataFile::Historic})
        ASSERT_TRUE(QFile::copy(shared.path(file), own.path(file)));
    Database::create(shared.path(DataFile::Societe), {&strjournal, &strsceau, &strsociete});
    Record row(strsociete);
    row[strsociete.soc_utilisateur] = QStringLiteral("DU");
    {
        Workspace workspace;
        workspace.open(shared.path(DataFile::Societe)).insert(row);
    }
    EXPECT_EQ(dossier.document(QStringLiteral("LIV"), {units[0]}), QStringLiteral("000001"));
    dossier.session = own;
    EXPECT_EQ(dossier.document(QStringLiteral("LIV"), {units[1]}, QStringLiteral("2")), QStringLiteral("000001"));
    for (const Session& session : {shared, own})
        for (const check::Fault& fault : check::run(session))
            ADD_FAILURE() << (fault.subject + " : " + fault.text).toStdString();
}

TEST(Dossiers, AreCheckedAsTheyAreAtOneMomentBesideAWriter) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 30);
    std::thread writer([&] {
        for (const QString& unit : units) dossier.document(QStringLiteral("LIV"), {unit});
    });
    for (int i = 0; i < 12; ++i)
        for (const check::Fault& fault : check::run(dossier.session))
            ADD_FAILURE() << (fault.subject + " : " + fault.text).toStdString();
    writer.join();
}

INSTANTIATE_TEST_SUITE_P(
    Dossiers, Breakages,
    testing::Values(
        Planted{"sold", DataFile::Vente, "update strfacl set fac_imm='' where fac_no='000001'",
                "26030002 : vendue sans ligne sur la facture ou le bon de consignation 000001"},
        Planted{"delivered", DataFile::Vente, "update strlivl set fac_imm='' where fac_no='000001'",
                "26030001 : livrée sans ligne sur le bon de livraison 000001"},
        Planted{"orphan", DataFile::Vente, "delete from strlive where fac_no='000001'",
                "bon de livraison 2026/000001 : lignes sans en-tête"},
        Planted{"empty", DataFile::Vente, "insert into strcsge (fac_aa, fac_no) values ('2026', '000001')",
                "bon de consignation 2026/000001 : aucune ligne"},
        Planted{"hidden", DataFile::Vente, "delete from strlivl where fac_lg='000' and fac_no='000001'",
                "bon de livraison 2026/000001 : enregistrement 000 absent"},
        Planted{"stock", DataFile::Molven, "update strarticle set art_stk=4 where art_ref='HIP'",
                "HIP : art_stk = 4 pour 3 unités"},
        Planted{"state", DataFile::Molven, "update strproduit set tes_vte='Q' where imm_art='26030004'",
                "26030004 : état inconnu : Q"},
        Planted{"set", DataFile::Molven, "update strproduit set tes_vte='A' where imm_art='26030004'",
                "26030004 : dans un ancillaire qui ne la contient pas"},
        Planted{"invoice", DataFile::Vente, "update strlive set fac_blv='000099' where fac_no='000002'",
                "bon de livraison 000002 : facture 000099 absente"},
        Planted{"note", DataFile::Vente, "update strfacl set fac_nbl='' where fac_lg<>'000'",
                "bon de livraison 000002 : la facture 000002 n'en porte aucune ligne"},
        Planted{"sold_set_back", DataFile::Molven, "update strproduit set tes_vte='N' where imm_art='26030002'",
                "26030002 : vendue par le document 000001, mais pas dans cet état"},
        Planted{"delivered_set_back", DataFile::Molven, "update strproduit set tes_vte='N' where imm_art='26030001'",
                "26030001 : sur le bon de livraison 000001, mais pas livrée"},
        Planted{"sold_twice", DataFile::Vente,
                "update strfacl set fac_imm='26030002' where fac_no='000002' and fac_lg='001'",
                "26030002 : vendue deux fois : 000001 000002"},
        Planted{"unknown_unit", DataFile::Vente, "update strfacl set fac_imm='26039999' where fac_no='000001'",
                "26039999 : immatriculation absente, portée par facture 000001"},
        Planted{"other_depot", DataFile::Molven, "update strproduit set num_dep='102' where imm_art='26030001'",
                "26030001 : dépôt 102 pour 101 sur bon de livraison 000001"},
        Planted{"other_client", DataFile::Molven, "update strproduit set clt_vte='000002' where imm_art='26030001'",
                "26030001 : client ou date autres que ceux de bon de livraison 000001"},
        Planted{"transferred_depot", DataFile::Molven, "update strproduit set num_dep='102' where imm_art='26030005'",
                "26030005 : dépôt 102 pour 101 sur bon de transfert 000001"},
        Planted{"transfer_date", DataFile::Vente, "update strbtre set fac_dat='11/03/2026'",
                "bon de transfert 000001 : date 11/03/2026 et 10/03/2026"},
        Planted{"renewal", DataFile::Vente, "update strbtre set fac_eta='T000009'",
                "bon de transfert 000001 : renouvelé sur le bon 000009 absent"},
        Planted{"renewal_elsewhere", DataFile::Vente, "update strbtre set fac_eta='T000001'",
                "bon de transfert 000001 : renouvelé sur le bon 000001, qui part du dépôt 001"},
        Planted{"lot", DataFile::Molven, "update strproduit set lot_art='' where imm_art='26030002'",
                "26030002 : lot «  », « LOT-1 » sur facture 000001"},
        Planted{"patient", DataFile::Molven, "update strproduit set reg_pat='' where imm_art='26030001'",
                "26030001 : patient absent : D'ALMEIDA Hélène sur bon de livraison 000001"},
        Planted{"other_patient", DataFile::Vente, "update strlive set fac_pat='DURAND' where fac_no='000001'",
                "26030001 : patient D'ALMEIDA Hélène, DURAND sur bon de livraison 000001"},
        Planted{"other_article", DataFile::Vente,
                "update strlivl set fac_ref='CUP' where fac_no='000001' and fac_lg='001'",
                "26030001 : article CUP sur bon de livraison 000001"},
        Planted{"stock_with_document", DataFile::Molven,
                "update strproduit set num_vte='000001' where imm_art='26030004'",
                "26030004 : en stock, sans ligne sur son document 000001"},
        Planted{"reopened_note", DataFile::Vente,
                "update strlive set fac_cpt='N', fac_blv='000000' where fac_no='000002'",
                "facture 000002 : le bon de livraison 000002 ne la désigne pas"},
        Planted{"client_of_note", DataFile::Vente, "update strlive set fac_clt='000002' where fac_no='000002'",
                "facture 000002 : le bon de livraison 000002 est à un autre client"},
        Planted{"client_of_line", DataFile::Vente,
                "update strlivl set fac_clt='000002' where fac_no='000001' and fac_lg='001'",
                "bon de livraison 000001 : ligne 001 : client 000002 sur un document du client 000001"},
        Planted{"total", DataFile::Vente, "update strface set fac_ttc=7 where fac_no='000001'",
                "facture 000001 : totaux autres que ceux des lignes : TTC 7,00 pour 94,95"},
        Planted{"amount", DataFile::Vente, "update strfacl set fac_qte=2 where fac_no='000001' and fac_lg='001'",
                "facture 000001 : ligne 001 : montants autres que quantité, prix et remise"},
        Planted{"year", DataFile::Vente, "update strface set fac_datf='05/03/2025' where fac_no='000001'",
                "facture 000001 : année ou clé de tri autre que la date 05/03/2025"},
        Planted{"number_twice", DataFile::Vente, "insert into strface (fac_aa, fac_no) values ('2025', '000001')",
                "facture 000001 : numéro aussi donné en 2026"},
        Planted{"line_twice", DataFile::Vente,
                "insert into strfacl (fac_aa, fac_no, fac_lg) values ('2026', '000001', '001')",
                "facture 2026/000001 : ligne 001 en double"},
        Planted{"malformed", DataFile::Molven, "update strproduit set imm_art='26130004' where imm_art='26030004'",
                "26130004 : immatriculation malformée"},
        Planted{"date", DataFile::Molven, "update strproduit set dat_liv='31/02/2026' where imm_art='26030004'",
                "26030004 : Date de réception : date impossible « 31/02/2026 »"},
        Planted{"expiry", DataFile::Molven, "update strproduit set dat_per='13/2030' where imm_art='26030004'",
                "26030004 : Date de péremption : mois impossible « 13/2030 »"},
        Planted{"unknown_article", DataFile::Molven, "update strproduit set ref_art='RIEN' where imm_art='26030004'",
                "RIEN : Cet article n'existe pas : 1 produit"},
        Planted{"unknown_vat", DataFile::Molven, "update strarticle set art_tva='8' where art_ref='HIP'",
                "8 : Ce code TVA n'existe pas : 1 article"},
        Planted{
            "unknown_set_line", DataFile::Ancillaire,
            "insert into strstock (stk_anc_imm, stk_anc_imm_lg, stk_imm_art) values ('00000001', '001', '26030004')",
            "26030004 : dans l'ancillaire 00000001, mais pas dans cet état"},
        Planted{"index", DataFile::Molven, "drop index strproduit_3", "strproduit : index strproduit_3 absent"},
        Planted{"unauthored", DataFile::Molven, "update strproduit set num_dep='102' where imm_art='26030001'",
                "Unité 20/26030001 : changé hors du programme : Dépôt"},
        Planted{"unauthored_since_creation", DataFile::Molven,
                "update strproduit set lot_art='AUTRE' where imm_art='26030004'",
                "Unité 20/26030004 : changé hors du programme : Lot"},
        Planted{"unauthored_price", DataFile::Vente,
                "update strfacl set fac_px=1 where fac_no='000001' and fac_lg='001'",
                "Ligne de la facture 2026/000001/001 : changé hors du programme : Prix unitaire"},
        Planted{"unauthored_discount", DataFile::Vente, "update strface set fac_rem=50 where fac_no='000001'",
                "Facture 2026/000001 : changé hors du programme : Remise"},
        Planted{"removed", DataFile::Molven, "delete from strproduit where imm_art='26030004'",
                "Unité 20/26030004 : supprimé hors du programme"},
        Planted{"added", DataFile::Molven,
                "insert into strproduit (pro_ann, imm_art, ref_art, num_dep) values ('20', '26030009', 'HIP', '001')",
                "Unité 20/26030009 : ajouté hors du programme"},
        Planted{"journal_emptied", DataFile::Molven, "delete from strjournal",
                "strjournal : journal vidé : plus aucune fiche de ce fichier n'a d'auteur"},
        Planted{"journal_cut", DataFile::Vente,
                "delete from strjournal where rowid>=(select min(rowid) from strjournal where jou_tab='strface')",
                "Facture 2026/000001 : ajouté hors du programme"},
        Planted{"patient_erased", DataFile::Vente, "update strlive set fac_pat='' where fac_no='000001'",
                "26030001 : patient D'ALMEIDA Hélène, aucun sur bon de livraison 000001"},
        Planted{"expiry_of_line", DataFile::Vente,
                "update strfacl set fac_dpr='12/2039' where fac_no='000001' and fac_lg='001'",
                "26030002 : Date de péremption « 12/2030 », « 12/2039 » sur facture 000001"},
        Planted{"conformity_of_none", DataFile::Molven,
                "insert into strconform (conf_ann, conf_imm) values ('20', '26039999')",
                "2026039999 : changements de conformité d'une immatriculation absente"},
        Planted{"conformity", DataFile::Molven,
                "insert into strconform (conf_ann, conf_imm, conf_typ) values ('20', '26030004', 'Z')",
                "26030004 : conformité «  », « Z » dans son historique"},
        Planted{"no_number", DataFile::Molven, "update strproduit set pro_vte='abc' where imm_art='26030004'",
                "strproduit : pro_vte : du texte à la place d'un nombre, 1 fois"},
        Planted{"trigger", DataFile::Molven, "create trigger t after update on strproduit begin select 1; end",
                "trigger t : ne vient pas du programme"},
        Planted{"serial_twice", DataFile::Molven, "update strproduit set fou_imm='S1', fou_ref=''",
                "26030004 : N° de série S1 aussi porté par 26030003"},
        Planted{"table", DataFile::Vente, "create table brouillon (a)", "table brouillon : ne vient pas du programme"},
        Planted{"vat", DataFile::Vente, "update strface set fac_tv1=9 where fac_no='000001'",
                "facture 000001 : totaux autres que ceux des lignes : TVA 1 9,00 pour 4,95"},
        Planted{"proforma", DataFile::Proforma, "insert into strface (fac_aa, fac_no) values ('2026', '000001')",
                "proforma 2026/000001 : aucune ligne"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Dossiers, WithADamagedOrMissingFileAreReported) {
    Dossier dossier;
    QFile vente(dossier.session.vente());
    ASSERT_TRUE(vente.open(QIODevice::ReadWrite));
    vente.seek(vente.size() / 2);
    vente.write(QByteArray(4096, '\x5a'));
    vente.close();
    QFile::remove(dossier.session.path(DataFile::Mail));
    QStringList files;
    for (const check::Fault& fault : check::run(dossier.session)) files.append(fault.file);
    EXPECT_TRUE(files.contains(QStringLiteral("vente.mdb")));
    EXPECT_TRUE(files.contains(QStringLiteral("mail.mdb")));
    EXPECT_FALSE(files.contains(QStringLiteral("molven.mdb")));
}

TEST(Creation, MakesASoundDossierAndRefusesAFolderThatHoldsOne) {
    QTemporaryDir folder;
    const creation::Options options{folder.path(), QStringLiteral("CE"), QStringLiteral("L'ESSAI"), false};
    const Session session = creation::create(options);
    EXPECT_TRUE(check::run(session).isEmpty());
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    EXPECT_EQ(molven.find(strspecif, {})->value(strspecif.spe_nom), QStringLiteral("L'ESSAI"));
    EXPECT_EQ(molven.find(strparfac, strparfac.par1_cde == QStringLiteral("4"))->value(strparfac.par1_tx),
              QStringLiteral("2.1"));
    EXPECT_NE(refusalOf([&] { creation::create(options); }), QStringLiteral("(accepté)"));
    for (const char* wrong : {"", "C", "CEE", "é1"}) {
        QTemporaryDir other;
        EXPECT_NE(refusalOf([&] {
                      creation::create({other.path(), QString::fromUtf8(wrong), QStringLiteral("X"), false});
                  }),
                  QStringLiteral("(accepté)"))
            << wrong;
        EXPECT_TRUE(QDir(other.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) << wrong;
    }
}

/// In a folder that is there the parts take their places one by one: whoever looks next finds them all, or none.
TEST(Creation, IsWholeOrAbsentInAFolderThatIsThereWhereverItIsKilled) {
    int kills = 0;
    for (int n = 1;; ++n) {
        QTemporaryDir folder;
        const creation::Options options{folder.path(), QStringLiteral("AX"), QStringLiteral("L'ESSAI"), true};
        const int status = test::ended(test::station([&] {
            test::Killer::armAtRenames(n);
            creation::create(options);
        }));
        if (!WIFSIGNALED(status)) break;
        ++kills;
        if (refusalOf([&] { creation::open(folder.path()); }) != QStringLiteral("(accepté)")) creation::create(options);
        const Session session = creation::open(folder.path());
        EXPECT_EQ(session.spe_nom, options.name);
        EXPECT_TRUE(QFile::exists(session.path(DataFile::Societe))) << "killed at rename " << n;
        EXPECT_TRUE(check::run(session).isEmpty()) << "killed at rename " << n;
        EXPECT_TRUE(QDir(folder.path()).entryList({QStringLiteral(".creation*")}, QDir::Dirs | QDir::Hidden).isEmpty());
    }
    EXPECT_GT(kills, 4);
}

/// What one program makes aside is not what another left behind, however often each looks.
TEST(Creation, OfSeveralAtOnceInOnePlaceLeavesEachWhole) {
    QTemporaryDir place;
    const QString aside = QStringLiteral(".creation");
    const auto folder = [&](int station, int n) { return place.filePath(QStringLiteral("%1-%2").arg(station).arg(n)); };
    QList<pid_t> stations;
    for (int station = 0; station < 4; ++station)
        stations << test::station([&] {
            for (int n = 0; n < 100; ++n) {
                Staging built(place.path(), aside);
                writeLine(built.path() + QStringLiteral("/CHEMIN.HC"), QStringLiteral("BASE"));
                built.moveTo(folder(station, n));
            }
        });
    for (const pid_t station : stations) EXPECT_EQ(test::ended(station), 0);
    for (int station = 0; station < 4; ++station)
        for (int n = 0; n < 100; ++n)
            EXPECT_EQ(QDir(folder(station, n)).entryList(QDir::Files | QDir::Hidden), QStringList{"CHEMIN.HC"});
    EXPECT_TRUE(QDir(place.path()).entryList({aside + u'*'}, QDir::Dirs | QDir::Hidden).isEmpty());
}

/// A share that refuses a name half-way: what had found its place is taken back.
TEST(Creation, LeavesNothingBehindWhereAPartIsRefusedItsPlace) {
    int refusals = 0;
    for (int n = 1; n < 6; ++n) {
        QTemporaryDir folder;
        test::Killer::refuseRename(n);
        const QString said = refusalOf([&] {
            creation::create({folder.path(), QStringLiteral("AX"), QStringLiteral("L'ESSAI"), true});
        });
        test::Killer::refuseRename(0);
        if (said == QStringLiteral("(accepté)")) { // a file that gets no name is copied
            EXPECT_TRUE(check::run(creation::open(folder.path())).isEmpty()) << n;
            continue;
        }
        ++refusals;
        EXPECT_TRUE(said.startsWith(QStringLiteral("Impossible d'écrire dans le dossier"))) << said.toStdString();
        EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) << n;
    }
    EXPECT_GE(refusals, 2);
}

TEST(Creation, AddsASecondDossierToTheList) {
    QTemporaryDir folder;
    creation::create({folder.path(), QStringLiteral("CE"), QStringLiteral("PREMIERE"), true});
    const Session second = creation::create({folder.path(), QStringLiteral("LB"), QStringLiteral("SECONDE"), true});
    EXPECT_TRUE(check::run(second).isEmpty());
    Workspace workspace;
    QStringList names;
    for (const Record& row : workspace.open(second.path(DataFile::Societe)).select(strsociete))
        names.append(row[strsociete.soc_nom]);
    EXPECT_EQ(names, (QStringList{"PREMIERE", "SECONDE"}));
}

TEST(Demonstration, IsSoundAndTheSameForTheSameSeed) {
    QTemporaryDir first, again, other;
    const Session session = demoDossier(first, 7);
    EXPECT_TRUE(check::run(session).isEmpty());
    EXPECT_EQ(contentOf(session), contentOf(demoDossier(again, 7)));
    EXPECT_NE(contentOf(session), contentOf(demoDossier(other, 8)));
    Workspace workspace;
    EXPECT_EQ(seller::read(workspace.open(session.molven()))[stremetteur.emt_exo],
              QStringLiteral("Exonération, article 261 du code général des impôts"));
    const auto states = workspace.open(session.molven()).countBy(strproduit, strproduit.tes_vte);
    EXPECT_EQ(QSet<QString>(states.keyBegin(), states.keyEnd()), (QSet<QString>{"N", "L", "O", "A"}));

    const QString stopped = other.filePath(QStringLiteral("arrêtée"));
    for (const int share : {8, 2}) { // while units are received, while documents are written
        const auto stop = [share](int done, int total) { return done * share < total; };
        EXPECT_EQ(refusalOf([&] {
                      demo::create(stopped, QStringLiteral("CE"), {100, 1}, stop);
                  }),
                  QStringLiteral("Opération abandonnée"));
        EXPECT_FALSE(QDir(stopped).exists());
    }
}

} // namespace molven

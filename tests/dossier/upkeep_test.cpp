// Backup, compaction, archiving and integration, killed at every write and on full disks.

#include "support/dossier.h"
#include "support/faults.h"
#include "support/processes.h"

#include "data/presence.h"
#include "dossier/check.h"
#include "dossier/creation.h"
#include "dossier/restoration.h"
#include "dossier/upkeep.h"
#include "reference/articles.h"
#include "sales/archiving.h"
#include "sales/document_archive.h"
#include "stock/exchange_files.h"
#include "stock/unit_integration.h"

#include <QDir>
#include <QFile>

#include <filesystem>

namespace molven {

using test::Dossier;
using test::ended;
using test::faultsOf;
using test::Killer;
using test::refusalOf;
using test::station;

namespace {

/// A dossier that has sold something of everything, in 2026.
void trade(Dossier& dossier) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 12);
    dossier.document(QStringLiteral("BTR"), units.mid(0, 2));
    dossier.document(QStringLiteral("FAC"), units.mid(2, 4));
    dossier.document(QStringLiteral("CSG"), units.mid(6, 2));
    dossier.document(QStringLiteral("LIV"), units.mid(8, 2));
}

void archiveAll(const Session& session, archive::Direction direction = archive::Direction::ToHistory) {
    archiving::moveBefore(session, direction, QDate(2100, 1, 1), {});
}

qint64 countOf(const QString& path, const Table& table, const Criterion& criterion = {}) {
    Workspace workspace;
    return workspace.open(path).count(table, criterion);
}

/// Records of a table in the working and the history file together.
qint64 inBoth(const QString& working, const Session& session, const Table& table) {
    return countOf(working, table) + countOf(session.historic(), table);
}

/// What a dossier's files hold, whichever of them it lies in.
QList<qint64> holdings(const Session& session) {
    QList<qint64> counts{inBoth(session.molven(), session, strproduit)};
    for (const Table* table : QList<const Table*>{&strface, &strfacl, &strcsge, &strcsgl, &strbtre, &strbtrl, &strlive})
        counts.append(inBoth(session.vente(), session, *table));
    return counts;
}

Record sent(int number, const QString& reference = QStringLiteral("S-HIP")) {
    Record unit(tripro);
    unit[tripro.imm_art] = QStringLiteral("2602%1").arg(number, 4, 10, QLatin1Char('0'));
    unit[tripro.ref_art] = reference;
    unit[tripro.lot_art] = QStringLiteral("L1");
    unit[tripro.pro_vte] = Decimal(40);
    unit[tripro.num_vte] = QStringLiteral("000007");
    return unit;
}

const unit_integration::Order Ordered{QStringLiteral("000001"), QStringLiteral("01/03/2026"),
                                      QStringLiteral("09/03/2026")};

void knowSupplierReference(const Session& session) {
    Workspace workspace;
    workspace.open(session.molven())
        .update(strarticle, {{strarticle.art_rfou, QStringLiteral("S-HIP")}},
                strarticle.art_ref == QStringLiteral("HIP"));
}

unit_integration::Outcome take(const Session& session, const QList<Record>& units) {
    Workspace workspace;
    return unit_integration::integrate(session, openUnitFiles(workspace, session), units, Ordered, {});
}

void takeThree(const Session& session) {
    try {
        take(session, {sent(1), sent(2), sent(3)});
    } catch (const Refusal&) {
        // taken before
    }
}

/// Work that is cut short, and repeated until it comes to its end.
struct Work {
    const char* name;
    void (*act)(const Session&);
    int fewest; ///< writes it surely has
};

const Work Works[] = {
    {"archive", [](const Session& session) { archiveAll(session); }, 20},
    {"reactivation",
     [](const Session& session) {
         archiveAll(session);
         archiveAll(session, archive::Direction::FromHistory);
     },
     20},
    {"integration", takeThree, 10},
    {"compaction", [](const Session& session) { upkeep::compact(session, {}); }, 20},
    {"backup",
     [](const Session& session) {
         const QString disk = session.dossier_app + QStringLiteral("/disque");
         QDir().mkpath(disk);
         upkeep::backUp(session, disk, {});
     },
     10},
};

} // namespace

class CutShort : public testing::TestWithParam<Work> {};

TEST_P(CutShort, LosesNothingAtAnyWrite) {
    Dossier dossier;
    trade(dossier);
    knowSupplierReference(dossier.session);
    const QList<qint64> before = holdings(dossier.session);
    int kills = 0;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 3000) << "it never ends";
        const int status = ended(station([&] {
            Killer::arm(n);
            GetParam().act(dossier.session);
        }));
        const Session session = creation::open(dossier.folder()); // finishes what was cut short
        QList<qint64> after = holdings(session);
        // What was integrated is there whole or not at all.
        const qint64 integrated = after[0] - before[0];
        EXPECT_TRUE(integrated == 0 || integrated == 3) << integrated;
        after[0] = before[0];
        ASSERT_EQ(after, before) << "killed at write " << n;
        if (!WIFSIGNALED(status)) {
            EXPECT_EQ(status, 0);
            break;
        }
        ++kills;
        n += n / 8; // the later writes are much alike
    }
    EXPECT_GT(kills, GetParam().fewest);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

INSTANTIATE_TEST_SUITE_P(AtAnyWrite, CutShort, testing::ValuesIn(Works),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(FullDisks, LeaveEveryFileAsItWasWhateverWasBegun) {
    Dossier dossier;
    trade(dossier);
    knowSupplierReference(dossier.session);
    for (const Work& work : Works)
        EXPECT_EQ(test::onSmallDisk(12'000,
                                    [&](const QString& disk) {
                                        const QString home = disk + QStringLiteral("/maison");
                                        std::filesystem::copy(dossier.folder().toStdString(), home.toStdString(),
                                                              std::filesystem::copy_options::recursive);
                                        const Session session = creation::open(home);
                                        const QList<qint64> before = holdings(session);
                                        test::fillDisk(disk);
                                        EXPECT_THROW(work.act(session), std::exception);
                                        EXPECT_EQ(holdings(session), before);
                                        QFile::remove(disk + QStringLiteral("/lest"));
                                        EXPECT_EQ(faultsOf(creation::open(home)), QStringList());
                                    }),
                  0)
            << work.name;
}

TEST(Compactions, FinishFromTheCopyThatIsLeftAndKeepTheJournal) {
    Dossier dossier;
    trade(dossier);
    const Session& session = dossier.session;
    const QList<qint64> before = holdings(session);
    for (const QString& path : {session.molven(), session.vente(), session.historic(), session.tri()}) {
        const QString copy = QFileInfo(path).dir().filePath(QStringLiteral("new.mdb"));
        ASSERT_TRUE(QFile::rename(path, copy));
        creation::open(dossier.folder());
        EXPECT_TRUE(QFile::exists(path));
        EXPECT_FALSE(QFile::exists(copy));
    }
    archiveAll(session);
    upkeep::compact(session, {});
    archiveAll(session, archive::Direction::FromHistory);
    EXPECT_EQ(holdings(session), before);
    EXPECT_EQ(faultsOf(session), QStringList());
}

TEST(Compactions, AreRefusedWhileOthersWorkAndKeepThemOut) {
    Dossier dossier;
    const QStringList folders{dossier.session.chemin_base};
    {
        const Presence working(folders, Presence::Kind::Working);
        const Presence another(folders, Presence::Kind::Working);
        EXPECT_TRUE(
            refusalOf([&] { upkeep::compact(dossier.session, {}); }).startsWith(u"D'autres postes travaillent"));
    }
    const Presence alone(folders, Presence::Kind::Alone);
    EXPECT_TRUE(
        refusalOf([&] { Presence(folders, Presence::Kind::Working); }).startsWith(u"Un recompactage est en cours"));
}

TEST(Backups, AreNotSoundWhenAFileIsLostEmptiedOrChanged) {
    Dossier dossier;
    trade(dossier);
    const QTemporaryDir disk;
    EXPECT_TRUE(refusalOf([&] {
                    upkeep::addGeneration(dossier.session, dossier.session.chemin_base, 0, {});
                }).contains(u"dans le dossier des données"));
    const QDir made(upkeep::addGeneration(dossier.session, disk.path(), 0, {}));
    const auto faults = [&] { return upkeep::verify(disk.path()).first().faults.join(u'|'); };
    EXPECT_EQ(faults(), QString());
    QFile sales(made.filePath(QStringLiteral("vente.mdb")));
    ASSERT_TRUE(sales.resize(sales.size() - 1));
    EXPECT_TRUE(faults().contains(u"vente.mdb : modifié depuis la sauvegarde")) << faults().toStdString();
    ASSERT_TRUE(sales.resize(0));
    EXPECT_TRUE(faults().contains(u"vente.mdb : n'est pas une base de données")) << faults().toStdString();
    ASSERT_TRUE(sales.remove());
    EXPECT_EQ(faults(), QStringLiteral("vente.mdb : absent"));
    EXPECT_TRUE(refusalOf([&] {
                    restoration::restore(dossier.session.dossier_app, made.path(), {}, restoration::Extent::Whole);
                }).contains(u"vente.mdb : absent"));
}

TEST(Backups, HoldTheFoldersOfUsersAndOfTheSecondSiteAndGiveThemBack) {
    Dossier dossier(QStringLiteral("IM"));
    const Session& session = dossier.session;
    const QString user = session.chemin_base + QStringLiteral("P1/"), sales = QStringLiteral("vente.mdb");
    QDir().mkpath(user);
    ASSERT_TRUE(QFile::copy(session.chemin_base + sales, user + sales));
    const QStringList files{session.chemin_base + sales, user + sales, session.chemin_gv + sales};
    int number = 0;
    const auto note = [&] {
        Record header(strlive);
        header[strlive.fac_no] = QString::number(++number);
        for (const QString& file : files) {
            Workspace workspace;
            workspace.open(file).insert(header);
        }
    };
    const auto notes = [&] {
        QList<qint64> counts;
        for (const QString& file : files) counts.append(countOf(file, strlive));
        return counts;
    };
    const auto restore = [&](const QString& backup, restoration::Extent extent) {
        return refusalOf([&] { restoration::restore(dossier.folder(), backup, {}, extent); });
    };
    note();
    const QTemporaryDir disk;
    const QString made = upkeep::addGeneration(session, disk.path(), 0, {});
    note();
    EXPECT_EQ(restore(made, restoration::Extent::Whole), QStringLiteral("(accepté)"));
    EXPECT_EQ(notes(), (QList<qint64>{1, 1, 1}));
    const QStringList kept = QDir(session.chemin_base).entryList({QStringLiteral("avant-restauration-*")});
    EXPECT_EQ(countOf(session.chemin_base + kept.value(0) + QStringLiteral("/P1/vente.mdb"), strlive), 2);
    EXPECT_EQ(countOf(session.chemin_base + kept.value(0) + QStringLiteral("/gv/vente.mdb"), strlive), 2);
    // A lost folder comes back; a backup without it is not whole.
    QDir(user).removeRecursively();
    EXPECT_EQ(restore(made, restoration::Extent::Whole), QStringLiteral("(accepté)"));
    EXPECT_EQ(notes(), (QList<qint64>{1, 1, 1}));
    QFile damaged(made + QStringLiteral("/P1/vente.mdb"));
    ASSERT_TRUE(damaged.resize(damaged.size() - 512));
    EXPECT_EQ(upkeep::verify(disk.path()).first().faults.value(0),
              QStringLiteral("P1/vente.mdb : modifié depuis la sauvegarde"));
    QDir(made + QStringLiteral("/P1")).removeRecursively();
    QFile::remove(made + u'/' + QStringLiteral("CONTENU.SHA256"));
    note();
    EXPECT_TRUE(restore(made, restoration::Extent::Whole).contains(u"ne contient pas P1/vente.mdb"));
    EXPECT_EQ(restore(made, restoration::Extent::Partial), QStringLiteral("(accepté)"));
    EXPECT_EQ(notes(), (QList<qint64>{1, 2, 1}));
}

TEST(FullDisks, LeaveTheLastGoodBackup) {
    EXPECT_EQ(test::onSmallDisk(9000,
                                [](const QString& disk) {
                                    Dossier dossier;
                                    trade(dossier);
                                    const Session& session = dossier.session;
                                    upkeep::backUp(session, disk, {});
                                    EXPECT_TRUE(upkeep::verify(disk).first().faults.isEmpty());
                                    const qint64 units = countOf(disk + QStringLiteral("/molven.mdb"), strproduit);
                                    dossier.receive(QStringLiteral("HIP"), 40);
                                    test::fillDisk(disk);
                                    bool isFull = false;
                                    try {
                                        upkeep::backUp(session, disk, {});
                                    } catch (const DataError&) {
                                        isFull = true;
                                    }
                                    EXPECT_TRUE(isFull);
                                    EXPECT_TRUE(upkeep::verify(disk).first().faults.isEmpty());
                                    EXPECT_EQ(countOf(disk + QStringLiteral("/molven.mdb"), strproduit), units);
                                    EXPECT_EQ(QDir(disk).entryList({QStringLiteral("*-copie")}, QDir::Files),
                                              QStringList());
                                }),
              0);
}

TEST(Archives, LeaveWhatIsOpenAndWhatStandsInBothFiles) {
    Dossier dossier;
    trade(dossier);
    const Session& session = dossier.session;
    Workspace workspace;
    Database molven = workspace.open(session.molven()), vente = workspace.open(session.vente()),
             historic = workspace.open(session.historic());
    const Record sold = molven.find(strproduit, strproduit.tes_vte == QStringLiteral("O")).value();
    historic.insert(sold);
    const QList<archiving::Moved> moved =
        archiving::moveBefore(session, archive::Direction::ToHistory, QDate(2100, 1, 1), {});
    EXPECT_EQ(moved.first().outcome.moved, 0) << "a delivery note that was not invoiced stays";
    EXPECT_EQ(moved.last().outcome.doubles, QStringList(sold[strproduit.pro_ann] + sold[strproduit.imm_art]));
    EXPECT_EQ(molven.count(strproduit, strproduit.tes_vte == QStringLiteral("O")), 1);
    EXPECT_EQ(historic.count(strfacl), 5) << "the hidden line goes with the others";
    // The next number of the series follows the archived ones.
    const QString invoice = dossier.document(QStringLiteral("FAC"), dossier.receive(QStringLiteral("HIP"), 1));
    EXPECT_EQ(invoice, QStringLiteral("000002"));
    // Stopped between two transactions, what was moved stays moved.
    const DocumentKind& kind = documentKind(QStringLiteral("FAC"));
    const auto stopped =
        archive::move(vente, historic, document_archive::subject(kind), {}, {}, [](int, int) { return false; });
    EXPECT_TRUE(stopped.isStopped);
    EXPECT_EQ(vente.count(strface), 1);
}

TEST(Integrations, TakeAllOrNoneAndNothingTwice) {
    Dossier dossier;
    const Session& session = dossier.session;
    EXPECT_EQ(take(session, {sent(1)}).unknown.size(), 1);
    knowSupplierReference(session);
    const auto first = take(session, {sent(1), sent(2), sent(3, QStringLiteral("AUTRE"))});
    EXPECT_EQ(first.created, (QStringList{QStringLiteral("26030001"), QStringLiteral("26030002")}));
    EXPECT_EQ(first.unknown.size(), 1);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    EXPECT_EQ(refusalOf([&] {
                  take(session, {sent(1), sent(2)});
              }),
              QStringLiteral("Ce fichier a déjà été intégré : 2 produits"));
    archiveAll(session);
    // The month is full in the middle of the file.
    Workspace workspace;
    workspace.open(session.molven())
        .update(strproduit, {{strproduit.imm_art, QStringLiteral("26039998")}},
                strproduit.imm_art == QStringLiteral("26030002"));
    EXPECT_EQ(refusalOf([&] {
                  take(session, {sent(4), sent(5)});
              }),
              QStringLiteral("Création impossible il y a deja 9999 entrees"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    EXPECT_EQ(take(session, {sent(4)}).created, QStringList(QStringLiteral("26039999")));
}

TEST(ExchangeFiles, ComeBackAsTheyWereWritten) {
    Dossier dossier;
    const QString folder = exchange_files::folder(dossier.session);
    Record odd = sent(1);
    odd[tripro.nom_dep] = QStringLiteral("CLINIQUE \"L'ÉTOILE\", LYON");
    const QString path = exchange_files::writeExtraction(folder + exchange_files::extractionName({2026, 3, 9}), {odd});
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readLine().trimmed(),
              "immat-molven,immat_frs,reference,lot,LPP,nho,peremption,num-ste,type-doc,no-doc,date-doc,no-client,"
              "nom-client,P-Vente,tarif");
    EXPECT_EQ(QString::fromUtf8(file.readLine().trimmed()),
              QStringLiteral("26020001,,S-HIP,L1,,,,,BL,000007,,,\"CLINIQUE \"\"L'ÉTOILE\"\", LYON\",40,"));
    EXPECT_EQ(exchange_files::read(path).first(), odd);
    exchange_files::write(folder + exchange_files::unitFileName(QStringLiteral("000007")), {odd, sent(2)}, {});
    EXPECT_EQ(exchange_files::read(exchange_files::pathOf(dossier.session, QStringLiteral("7"))).size(), 2);
    exchange_files::write(folder + exchange_files::unitFileName(QStringLiteral("000008")), {}, {});
    EXPECT_EQ(refusalOf([&] { exchange_files::read(exchange_files::pathOf(dossier.session, QStringLiteral("8"))); }),
              QStringLiteral("Aucun produit sur ce fichier"));
}

} // namespace molven

#include "support/dossier.h"
#include "support/processes.h"

#include "dossier/check.h"
#include "dossier/creation.h"
#include "dossier/exposure.h"
#include "dossier/restoration.h"
#include "sales/documents.h"

#include <QDir>

namespace molven {

using test::Dossier;
using test::ended;
using test::Killer;
using test::refusalOf;
using test::station;

namespace {

void copyFiles(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QString& name : QDir(from).entryList({QStringLiteral("*.mdb")}, QDir::Files)) {
        QFile::remove(to + u'/' + name);
        ASSERT_TRUE(QFile::copy(from + u'/' + name, to + u'/' + name));
    }
}

/// A journal begins with zeros until it is on the disk, before the first change of its file.
bool isToBePlayedBack(const QString& journal) {
    QFile file(journal);
    return file.open(QIODevice::ReadOnly) && !file.read(1).startsWith('\0') && file.size() > 0;
}

/// A dossier with a backup of the day before, killed today in the middle of a delivery note.
class Restored : public testing::Test {
protected:
    Restored() {
        dossier.receive(QStringLiteral("HIP"), 4);
        copyFiles(data(), backup);
        dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 2));
        const QString journal = dossier.session.molven() + QStringLiteral("-journal");
        for (int n = 20; n < 100 && !isToBePlayedBack(journal); ++n)
            ended(station([&] {
                Killer::arm(n);
                dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 2));
            }));
    }

    QString data() const { return dossier.session.chemin_base; }
    qint64 units() {
        Workspace workspace;
        return workspace.open(dossier.session.molven()).count(strproduit);
    }
    qsizetype faults() { return check::run(creation::open(dossier.folder())).size(); }
    QString restore() {
        return refusalOf([&] { restoration::restore(dossier.folder(), backup, {}); });
    }

    Dossier dossier;
    QTemporaryDir disk;
    QString backup = disk.filePath(QStringLiteral("sauvegarde"));
};

} // namespace

TEST_F(Restored, ABackupIsWholeWhateverJournalsLieInItsPlace) {
    EXPECT_EQ(restore(), QStringLiteral("(accepté)"));
    EXPECT_EQ(units(), 4);
    EXPECT_EQ(faults(), 0);
    EXPECT_EQ(QDir(data()).entryList({QStringLiteral("avant-restauration-*")}, QDir::Dirs).size(), 1);
    dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 2));
    EXPECT_EQ(faults(), 0);
}

TEST_F(Restored, ABackupCopiedOverByHandIsNotOpened) {
    copyFiles(backup, data());
    EXPECT_EQ(test::dataErrorOf([&] { units(); }), DataError::CannotOpen);
    EXPECT_EQ(restore(), QStringLiteral("(accepté)"));
    EXPECT_EQ(units(), 4);
    EXPECT_EQ(faults(), 0);
}

TEST_F(Restored, ADamagedOrForeignBackupChangesNothing) {
    const qint64 before = units();
    QFile damaged(backup + QStringLiteral("/vente.mdb"));
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek(4096);
    damaged.write(QByteArray(8192, '\xff'));
    damaged.close();
    EXPECT_NE(restore(), QStringLiteral("(accepté)"));
    QFile::remove(backup + QStringLiteral("/molven.mdb"));
    QFile::remove(backup + QStringLiteral("/vente.mdb"));
    EXPECT_EQ(restore(), QStringLiteral("La sauvegarde ne contient pas le fichier molven.mdb"));
    EXPECT_EQ(units(), before);
    EXPECT_EQ(faults(), 0);
    EXPECT_EQ(QDir(data()).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden), QStringList());
}

TEST_F(Restored, ADossierExchangedByHalfDoesNotOpenUntilItIsWhole) {
    const QString obstacle = data() + QStringLiteral("/stocks.mdb");
    QFile::remove(obstacle);
    QDir().mkdir(obstacle); // the exchange stops here
    EXPECT_TRUE(restore().startsWith(QStringLiteral("Impossible de déplacer")));
    EXPECT_TRUE(refusalOf([&] { creation::open(dossier.folder()); }).contains(QStringLiteral("n'est pas terminée")));
    QDir().rmdir(obstacle);
    EXPECT_EQ(restore(), QStringLiteral("(accepté)"));
    EXPECT_EQ(units(), 4);
    EXPECT_EQ(faults(), 0);
}

TEST(Exposure, ANewInstallationIsForItsOwnerAndGroup) {
    QTemporaryDir parent;
    const QString home = parent.filePath(QStringLiteral("neuf"));
    const Session session = creation::create({home, QStringLiteral("CE"), QStringLiteral("SOCIETE"), true});
    const auto others = QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    for (const QString& path : {home, session.chemin_base, session.molven(), session.path(DataFile::Societe),
                                session.tri(), home + QStringLiteral("/CHEMIN.HC")})
        EXPECT_EQ(QFile::permissions(path) & others, QFile::Permissions()) << path.toStdString();
    EXPECT_TRUE(QFile::permissions(session.molven()).testFlag(QFile::WriteGroup));

    EXPECT_EQ(exposure::readableByAll(session), QStringList());
    for (const QString& path : {parent.path(), home, QDir::cleanPath(session.chemin_base), session.vente()})
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ReadOther | QFile::ExeOther);
    EXPECT_EQ(exposure::readableByAll(session), QStringList("vente.mdb"));
}

} // namespace molven

#include "support/dossier.h"
#include "support/processes.h"

#include "reference/party_tables.h"

#include <QDir>
#include <QDirIterator>

namespace molven {

using test::ended;
using test::Killer;
using test::station;

namespace {

/// Three files that are written together, in folders as a dossier's own, a user's and a second site's.
const QStringList Files{QStringLiteral("data/un.mdb"), QStringLiteral("data/AX/deux.mdb"),
                        QStringLiteral("gv/trois.mdb")};

void create(const QString& root) {
    for (const QString& name : Files) {
        QDir().mkpath(QFileInfo(root + u'/' + name).path());
        Database::create(root + u'/' + name, {&strclient});
    }
}

/// One record into every file, of several pages.
void writeAll(const QString& root) {
    Workspace workspace;
    QList<Database> files;
    for (const QString& name : Files) files.append(workspace.open(root + u'/' + name));
    const QString number = QString::number(files[0].count(strclient));
    Transaction transaction(workspace);
    for (Database& file : files) {
        Record client(strclient);
        client[strclient.clt_cod] = number;
        client[strclient.clt_memo] = QString(9000, u'x');
        file.insert(client);
    }
    transaction.commit();
}

qint64 countOf(const QString& path) {
    Workspace workspace;
    return workspace.open(path).count(strclient);
}

QSet<qint64> countsOf(const QString& root, qsizetype first) {
    QSet<qint64> counts;
    for (qsizetype i = 0; i < Files.size(); ++i)
        counts.insert(countOf(root + u'/' + Files[(first + i) % Files.size()]));
    return counts;
}

/// Kills a writer at every of its writes in turn, calls `reopened` behind each, until one ends.
void killEverywhere(const QString& root, const std::function<void(int n)>& reopened) {
    bool isFinished = false;
    for (int n = 1; !isFinished; ++n) {
        ASSERT_LT(n, 200) << "the writing never ends";
        isFinished = !WIFSIGNALED(ended(station([&] {
            Killer::arm(n);
            writeAll(root);
        })));
        if (!isFinished) reopened(n);
        if (testing::Test::HasFailure()) return;
    }
}

QStringList leftBehind(const QString& root) {
    QStringList found;
    QDirIterator all(root, {QStringLiteral("*-mj*"), QStringLiteral("*-journal")}, QDir::Files,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) found.append(all.next());
    return found;
}

class KilledCommits : public testing::Test {
protected:
    KilledCommits() { create(root); }

    QTemporaryDir folder;
    QString root = folder.filePath(QStringLiteral("l'été"));
};

} // namespace

TEST_F(KilledCommits, AreWholeOrAbsentInARenamedFolder) {
    int kills = 0;
    killEverywhere(root, [&](int n) {
        const QString renamed = folder.filePath(QString(n, u'd')); // longer and shorter than before
        ASSERT_TRUE(QDir().rename(root, renamed));
        EXPECT_EQ(countsOf(renamed, n).size(), 1) << "killed at write " << n;
        ASSERT_TRUE(QDir().rename(renamed, root));
        ++kills;
    });
    EXPECT_GT(kills, 30);
    EXPECT_EQ(leftBehind(root), QStringList());
}

TEST_F(KilledCommits, AreWholeOrAbsentForWorkstationsWithOtherPaths) {
    killEverywhere(root, [&](int n) {
        const QString first = Files[n % Files.size()];
        EXPECT_EQ(test::atOtherMount(root, [&](const QString& place) { countOf(place + u'/' + first); }), 0);
        EXPECT_EQ(countsOf(root, n + 1).size(), 1) << "killed at write " << n;
    });
    EXPECT_EQ(leftBehind(root), QStringList());
}

TEST_F(KilledCommits, AreNeverHalfUndoneByAWorkstationThatSeesHalfOfThem) {
    int refusals = 0;
    killEverywhere(root, [&](int n) {
        EXPECT_EQ(test::atOtherMount(root + QStringLiteral("/data"),
                                     [](const QString& place) {
                                         countOf(place + QStringLiteral("/un.mdb"));
                                         countOf(place + QStringLiteral("/AX/deux.mdb"));
                                     }),
                  0);
        const int alone = test::atOtherMount(
            root + QStringLiteral("/gv"), [](const QString& place) { countOf(place + QStringLiteral("/trois.mdb")); });
        if (alone != 0) ++refusals;
        EXPECT_EQ(countsOf(root, n).size(), 1) << "killed at write " << n;
    });
    EXPECT_GT(refusals, 5);
}

TEST_F(KilledCommits, LeaveAJournalThatABackupCopiedOverIsNotOpenedWith) {
    const QString file = root + u'/' + Files[0], backup = folder.filePath(QStringLiteral("sauvegarde.mdb"));
    ASSERT_TRUE(QFile::copy(file, backup));
    writeAll(root);
    int refusals = 0;
    killEverywhere(root, [&](int n) {
        const bool hasJournal = QFileInfo(file + QStringLiteral("-journal")).size() > 512;
        const QString kept = folder.filePath(QStringLiteral("garde.mdb"));
        ASSERT_TRUE(QFile::rename(file, kept) && QFile::copy(backup, file));
        if (hasJournal && test::dataErrorOf([&] { countOf(file); }) == DataError::CannotOpen) ++refusals;
        if (!hasJournal) {
            EXPECT_EQ(countOf(file), 0) << "killed at write " << n;
        }
        ASSERT_TRUE(QFile::remove(file) && QFile::rename(kept, file));
        EXPECT_EQ(countsOf(root, n).size(), 1) << "the refusal lost the journal of write " << n;
    });
    EXPECT_GT(refusals, 10);
}

} // namespace molven

#include "support/data_folder.h"
#include "support/dossier.h"

#include "reference/party_tables.h"
#include "sales/document_tables.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace molven {

namespace {

class TwoFiles : public testing::Test {
protected:
    TwoFiles()
        : first(folder.filePath(QStringLiteral("un d'abord.mdb"))),
          second(folder.filePath(QStringLiteral("deux.mdb"))) {
        Database::create(first, {&strclient});
        Database::create(second, {&strlive});
    }

    static Record client(const QString& memo = {}) {
        Record made(strclient);
        made[strclient.clt_cod] = QStringLiteral("000001");
        made[strclient.clt_memo] = memo;
        return made;
    }

    qint64 clients() {
        Workspace workspace;
        return workspace.open(first).count(strclient);
    }
    qint64 notes() {
        Workspace workspace;
        return workspace.open(second).count(strlive);
    }

    test::DataFolder folder;
    QString first, second;
};

void overwrite(const QString& path, qint64 at, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(at);
    file.write(bytes);
}

} // namespace

TEST_F(TwoFiles, ATransactionWritesAllFilesOrNone) {
    Workspace workspace;
    Database a = workspace.open(first);
    Database b = workspace.open(second);
    {
        Transaction abandoned(workspace);
        a.insert(client());
        b.insert(Record(strlive));
    }
    EXPECT_EQ(clients() + notes(), 0);
    {
        Transaction outer(workspace);
        a.insert(client());
        {
            Transaction inner(workspace);
            b.insert(Record(strlive));
            inner.commit();
        }
        EXPECT_EQ(clients() + notes(), 0) << "a transaction inside another must leave the commit to it";
        outer.commit();
    }
    EXPECT_EQ(clients(), 1);
    EXPECT_EQ(notes(), 1);
}

TEST_F(TwoFiles, AnInnerTransactionThatWasGivenUpIsNotCommittedByTheOuterOne) {
    Workspace workspace;
    Database a = workspace.open(first);
    Database b = workspace.open(second);
    Transaction outer(workspace);
    a.insert(client());
    for (int i = 0; i < 2; ++i) {
        Transaction abandoned(workspace);
        b.insert(Record(strlive));
        a.update(strclient, {{strclient.clt_memo, QStringLiteral("changé")}}, {});
        Transaction innermost(workspace);
        a.remove(strclient);
        innermost.commit();
    }
    EXPECT_TRUE(workspace.inTransaction());
    outer.commit();
    EXPECT_EQ(notes(), 0);
    EXPECT_EQ(clients(), 1);
    EXPECT_EQ(a.find(strclient, {})->value(strclient.clt_memo), QString());
}

TEST_F(TwoFiles, ADuplicateKeyLeavesTheTransactionAsItWas) {
    Workspace workspace;
    Database a = workspace.open(first);
    a.insert(client());
    EXPECT_NE(test::dataErrorOf([&] {
                  Transaction transaction(workspace);
                  a.update(strclient, {{strclient.clt_memo, QStringLiteral("changé")}}, {});
                  a.insert(client());
                  transaction.commit();
              }),
              0);
    EXPECT_EQ(a.find(strclient, {})->value(strclient.clt_memo), QString());
    EXPECT_FALSE(workspace.inTransaction());
}

TEST_F(TwoFiles, MissingForeignDamagedAndLaterFilesAreTold) {
    const auto opening = [](const QString& path) {
        return test::dataErrorOf([&] {
            Workspace workspace;
            workspace.open(path).count(strclient);
        });
    };
    EXPECT_EQ(opening(folder.filePath(QStringLiteral("absent.mdb"))), DataError::CannotOpen);
    EXPECT_EQ(opening(QFileInfo(first).path()), DataError::CannotOpen);

    const QString foreign = folder.filePath(QStringLiteral("texte.mdb"));
    QFile text(foreign);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write(QByteArray(4096, 'x'));
    text.close();
    EXPECT_EQ(opening(foreign), DataError::NotADatabase);

    overwrite(second, 68, QByteArray("\0\0\0\0", 4)); // the application id
    EXPECT_EQ(opening(second), DataError::NotADatabase);
    overwrite(second, 68, "MOLV");
    overwrite(second, 60, QByteArray("\0\0\0\x63", 4)); // the schema version
    EXPECT_EQ(opening(second), DataError::NotADatabase);

    overwrite(first, 100, QByteArray(400, '\xff')); // the root page
    EXPECT_NE(opening(first), 0);
}

TEST_F(TwoFiles, AFileInUseElsewhereIsNotReplaced) {
    EXPECT_EQ(test::dataErrorOf([&] { Database::create(first, {&strclient}); }), DataError::CannotOpen);
}

TEST_F(TwoFiles, ALongStatementIsStoppedAndLeavesEverythingAsBefore) {
    Workspace workspace;
    Database database = workspace.open(first);
    {
        Transaction many(workspace);
        for (int i = 0; i < 3'000; ++i) {
            Record one = client();
            one[strclient.clt_cod] = QString::number(i);
            database.insert(one);
        }
        many.commit();
    }
    const auto memos = [&] { return database.count(strclient, strclient.clt_memo == QStringLiteral("x")); };
    int asked = 0;
    const Watch watch(workspace, [&asked] { return ++asked < 3; });
    EXPECT_THROW(
        {
            Transaction transaction(workspace);
            database.update(strclient, {{strclient.clt_memo, QStringLiteral("x")}}, {});
            transaction.commit();
        },
        Refusal);
    EXPECT_EQ(asked, 3);
    asked = -1'000'000;
    EXPECT_EQ(memos(), 0);
    Transaction next(workspace);
    database.update(strclient, {{strclient.clt_memo, QStringLiteral("x")}}, {});
    next.commit();
    EXPECT_EQ(memos(), 3'000) << "what comes after is written";
}

TEST_F(TwoFiles, AFullDiskLeavesEverythingAsBefore) {
    {
        Workspace workspace;
        workspace.open(first).insert(client());
    }
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const auto room = static_cast<rlim_t>(QFile(first).size() + 8192);
        const rlimit limit{room, room};
        setrlimit(RLIMIT_FSIZE, &limit);
        Workspace workspace;
        Database a = workspace.open(first);
        Database b = workspace.open(second);
        Transaction transaction(workspace);
        const int error = test::dataErrorOf([&] {
            b.insert(Record(strlive));
            a.update(strclient, {{strclient.clt_memo, QString(500'000, u'x')}}, {});
            transaction.commit();
        });
        // A caller that goes on all the same must not write outside of the transaction that is over.
        const int next = test::dataErrorOf([&] { b.insert(Record(strlive)); });
        if (next == 0) transaction.commit();
        _exit(error == 0 ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the full disk was not told";
    EXPECT_EQ(notes(), 0);
    Workspace workspace;
    EXPECT_EQ(workspace.open(first).find(strclient, {})->value(strclient.clt_memo), QString());
    EXPECT_TRUE(workspace.open(first).integrityFaults().isEmpty());
}

} // namespace molven

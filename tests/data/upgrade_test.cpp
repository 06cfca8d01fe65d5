#include "support/dossier.h"

#include "data/catalogue.h"
#include "reference/parameter_tables.h"
#include "stock/unit_tables.h"

#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace molven {

namespace {

/// Units as the first version kept them: fields and indexes were fewer, and not in the same places.
struct OldUnits : Table {
    using Table::Table;
    Text imm_art{this, "imm_art", 8};
    Text lot_art{this, "lot_art", 20};
    Text pro_ann{this, "pro_ann", 2};
    Index by_lot{this, {lot_art}};
    Index by_immatriculation{this, {imm_art}};
};
const OldUnits oldUnits{"strproduit"};

QByteArray contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// Names of the tables and indexes of a file with what they were made from.
QString layoutOf(const QString& path) {
    Workspace workspace;
    return workspace.open(path).firstValue(QStringLiteral(
        "select group_concat(line,char(10)) from (select name||' '||lower(case type when 'index' then sql else '' end) "
        "as line from sqlite_master order by name)"));
}

/// Runs a check in a child process; whether it held.
template <class Check>
bool inChild(const Check& check) {
    const pid_t child = fork();
    if (child == 0) _exit(check() ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// A file of units that the first version of the program left.
class OldFile : public testing::Test {
protected:
    OldFile() : path(folder.filePath(QStringLiteral("molven.mdb"))) {}

    void leave(const QStringList& immatriculations) {
        Database::create(path, {&oldUnits});
        {
            Workspace workspace;
            for (const QString& immatriculation : immatriculations) {
                Record unit(oldUnits);
                unit[oldUnits.imm_art] = immatriculation;
                unit[oldUnits.lot_art] = QStringLiteral("L1");
                workspace.open(path).insert(unit);
            }
        }
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(60); // the schema version
        file.write(QByteArray("\0\0\0\1", 4));
    }

    QTemporaryDir folder;
    QString path;
};

} // namespace

TEST_F(OldFile, IsBroughtUpToDateWithItsRecordsWhenItIsOpened) {
    leave({QStringLiteral("26030001"), QStringLiteral("26030002")});
    const QString fresh = folder.filePath(QStringLiteral("neuf.mdb"));
    Database::create(fresh, tablesOf(DataFile::Molven));
    Workspace workspace;
    Database first = workspace.open(folder.filePath(QStringLiteral("neuf.mdb")));
    Database molven = workspace.open(path);
    EXPECT_EQ(molven.count(strproduit, strproduit.lot_art == QStringLiteral("L1") && strproduit.reg_pat == QString()),
              2);
    EXPECT_TRUE(molven.find(strproduit, {})->isNull(strproduit.pro_vte));
    EXPECT_EQ(molven.count(strparam), 0);
    EXPECT_EQ(layoutOf(path), layoutOf(fresh));
    const QByteArray after = contents(path);
    EXPECT_EQ(after.mid(60, 4), contents(fresh).mid(60, 4)) << "the version in its head";
    Workspace().open(path).count(strproduit);
    EXPECT_EQ(contents(path), after) << "an up-to-date file is written again";
}

TEST_F(OldFile, IsBroughtUpToDateOnceByTwoWorkstationsThatOpenItTogether) {
    leave({QStringLiteral("26030001")});
    const auto opens = [this] {
        return test::dataErrorOf([this] { Workspace().open(path).find(strproduit, strproduit.reg_pat == QString()); });
    };
    std::vector<pid_t> stations;
    for (int i = 0; i < 4; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) _exit(opens() == 0 ? 0 : 1);
        stations.push_back(child);
    }
    for (const pid_t station : stations) {
        int status = 0;
        waitpid(station, &status, 0);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
}

TEST_F(OldFile, OfWhichAUniqueIndexIsContradictedOpensAllTheSame) {
    leave({QStringLiteral("26030001"), QStringLiteral("26030001")});
    Workspace workspace;
    EXPECT_EQ(workspace.open(path).count(strproduit), 2);
    EXPECT_TRUE(layoutOf(path).contains(QStringLiteral("create index strproduit_1 on strproduit (pro_ann,imm_art)")));
}

TEST_F(OldFile, ThatCannotBeWrittenIsToldAndStaysAsItWas) {
    leave({QStringLiteral("26030001")});
    const QByteArray before = contents(path);
    const auto refused = [this](const QString& reason) {
        try {
            Workspace().open(path);
        } catch (const DataError& error) {
            return error.description.contains(QStringLiteral("version précédente")) &&
                   error.description.contains(reason);
        }
        return false;
    };
    QFile::setPermissions(folder.path(), QFile::Permissions(0x5555));
    QFile::setPermissions(path, QFile::Permissions(0x4444));
    EXPECT_TRUE(inChild([&] {
        if (geteuid() == 0 && seteuid(65534) != 0) return false; // an administrator may write everything
        return refused(QStringLiteral("protégé en écriture"));
    }));
    QFile::setPermissions(folder.path(), QFile::Permissions(0x7700));
    QFile::setPermissions(path, QFile::Permissions(0x6600));
    EXPECT_TRUE(inChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{static_cast<rlim_t>(before.size() + 4096), static_cast<rlim_t>(before.size() + 4096)};
        setrlimit(RLIMIT_FSIZE, &limit);
        return refused(QString());
    }));
    EXPECT_EQ(contents(path), before);
}

} // namespace molven

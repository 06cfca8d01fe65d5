#include "support/dossier.h"
#include "support/processes.h"

#include "dossier/check.h"
#include "dossier/conversion.h"
#include "dossier/creation.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QFile>

namespace molven {

using test::ended;
using test::Killer;
using test::station;

namespace {

const QString Source = QStringLiteral(MOLVEN_SOURCES "/tests/data/jet");

QList<QStringList> stated() {
    QFile file(Source + QStringLiteral("/contents.tsv"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<QStringList> lines;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (!line.isEmpty()) lines.append(QString::fromUtf8(line).split(u'\t'));
    return lines;
}

} // namespace

TEST(Conversions, HoldWhatTheSourceHolds) {
    QTemporaryDir folder;
    const auto outcome = conversion::convert(Source, folder.filePath(QStringLiteral("dossier")), false, {});
    for (const conversion::Converted& table : outcome.tables)
        EXPECT_TRUE(table.isWhole()) << (table.file + u' ' + table.table).toStdString();
    int compared = 0;
    for (const QStringList& line : stated()) {
        if (!QFile::exists(Source + u'/' + line[0])) continue;
        Workspace workspace;
        Database file = workspace.open(outcome.session.chemin_base + line[0]);
        EXPECT_EQ(file.firstValue(QStringLiteral("select count(*) from ") + line[1]), line[2]) << line[1].toStdString();
        for (const QString& sum : line.mid(3)) {
            const Decimal found = Decimal::fromText(
                file.firstValue(QStringLiteral("select sum(%1) from %2").arg(sum.section(u'=', 0, 0), line[1])));
            EXPECT_EQ(found.rounded(4), Decimal::fromText(sum.section(u'=', 1))) << sum.toStdString();
            ++compared;
        }
    }
    EXPECT_GT(compared, 50);
    Workspace workspace;
    Database molven = workspace.open(outcome.session.molven()), vente = workspace.open(outcome.session.vente());
    EXPECT_EQ(outcome.session.spe_nom, QStringLiteral("DISTRIBUTION DEMONSTRATION"));
    EXPECT_EQ(vente.count(strbtre, strbtre.fac_nom == QStringLiteral("HÔPITAL PRIVÉ DE L'OUEST TOULOUSE")), 1);
    EXPECT_EQ(molven.count(strproduit, strproduit.reg_pat == QString()),
              300 - molven.count(strproduit, strproduit.reg_pat != QString()));
}

TEST(Conversions, NameADamagedFileAndTakeTheOthers) {
    QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("source"));
    QDir().mkpath(source);
    for (const QString& name : QDir(Source).entryList({QStringLiteral("*.mdb")}, QDir::Files))
        QFile::copy(Source + u'/' + name, source + u'/' + name);
    const auto write = [&source](const char* name, const QByteArray& bytes) {
        QFile file(source + u'/' + QString::fromLatin1(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    write("gencode.mdb", "rien d'une base");
    QFile half(Source + QStringLiteral("/vente.mdb"));
    ASSERT_TRUE(half.open(QIODevice::ReadOnly));
    write("vente.mdb", half.read(half.size() / 2));
    const auto outcome = conversion::convert(source, folder.filePath(QStringLiteral("dossier")), false, {});
    EXPECT_TRUE(outcome.notices.join(u'\n').contains(QStringLiteral("gencode.mdb : ")));
    bool isShort = false;
    for (const conversion::Converted& table : outcome.tables) isShort = isShort || table.read < table.announced;
    EXPECT_TRUE(isShort || outcome.notices.join(u'\n').contains(QStringLiteral("vente.mdb")));
    Workspace workspace;
    EXPECT_EQ(workspace.open(outcome.session.molven()).count(strproduit), 300);
    // Without its main file the company is asked, and the rest is taken all the same.
    write("molven.mdb", "rien d'une base");
    const QString bare = folder.filePath(QStringLiteral("sans_molven"));
    EXPECT_TRUE(
        test::refusalOf([&] { conversion::convert(source, bare, false, {}); }).contains(QStringLiteral("--code")));
    const auto named = conversion::convert(source, bare, false, {}, {QStringLiteral("CE"), QStringLiteral("REPRISE")});
    EXPECT_EQ(named.session.spe_nom, QStringLiteral("REPRISE"));
    EXPECT_TRUE(named.notices.join(u'\n').contains(QStringLiteral("molven.mdb : ")));
    // A target that holds something stays as it is.
    EXPECT_NE(
        test::refusalOf([&] { conversion::convert(source, folder.filePath(QStringLiteral("dossier")), false, {}); }),
        QStringLiteral("(accepté)"));
}

/// Cut short at any write, a conversion is in nobody's way and listed nowhere; begun again, it leaves nothing aside.
TEST(Conversions, BeginAgainAfterBeingKilled) {
    for (const bool addToSocieties : {false, true}) {
        QTemporaryDir folder;
        const QString target = folder.filePath(QStringLiteral("dossier"));
        if (addToSocieties) creation::create({target, QStringLiteral("LB"), QStringLiteral("AUTRE SOCIETE"), true});
        const auto listed = [&target] {
            Workspace workspace;
            return workspace.open(target + QStringLiteral("/societe.mdb")).count(strsociete);
        };
        int kills = 0;
        for (int n = 1;; n *= 6) {
            const int status = ended(station([&] {
                Killer::arm(n);
                conversion::convert(Source, target, addToSocieties, {});
            }));
            if (!WIFSIGNALED(status)) {
                EXPECT_EQ(status, 0);
                break;
            }
            ++kills;
            EXPECT_TRUE(addToSocieties ? listed() == 1 : !QFile::exists(target)) << "killed at write " << n;
        }
        EXPECT_GT(kills, 3);
        const Session session = creation::open(target, addToSocieties ? QStringLiteral("data_ce") : QString());
        EXPECT_EQ(session.spe_nom, QStringLiteral("DISTRIBUTION DEMONSTRATION"));
        for (const QString& place : {folder.path(), target})
            EXPECT_EQ(QDir(place).entryList({QStringLiteral(".*")}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot),
                      QStringList());
        EXPECT_TRUE(QFile::permissions(target).testFlag(QFile::ExeGroup)) << "colleagues may come in";
        if (!addToSocieties) continue;
        EXPECT_EQ(listed(), 2);
        // A whole data folder that a killed program did not list is left alone, and another is made.
        Workspace workspace;
        workspace.open(target + QStringLiteral("/societe.mdb"))
            .remove(strsociete, strsociete.soc_mot == QStringLiteral("CE"));
        EXPECT_EQ(startup::folderName(startup::dossierNamed(
                      startup::dossiers(conversion::convert(Source, target, true, {}).session), QStringLiteral("CE"))),
                  QStringLiteral("data_ce-2"));
        EXPECT_TRUE(QFile::exists(target + QStringLiteral("/data_ce/molven.mdb")));
    }
}

} // namespace molven

#include "support/dossier.h"
#include "support/processes.h"

#include "data/safe_file.h"
#include "printing/print_job.h"
#include "shell/access.h"
#include "shell/folder_files.h"

#include <QFile>

#include <sys/stat.h>

namespace molven {

using test::fillDisk;
using test::refusalOf;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(illisible)");
}

} // namespace

TEST(SafeFiles, OnAFullDiskEveryFileIsAsBefore) {
    EXPECT_EQ(test::onSmallDisk(
                  64,
                  [](const QString& disk) {
                      const QString path = disk + QStringLiteral("/CODGES.SVI");
                      Session session;
                      session.dossier_app = disk;
                      writeLine(path, QStringLiteral("VELO"));
                      fillDisk(disk);
                      PrintJob job(QStringLiteral("LETTRE"));
                      job.print(QStringLiteral("texte"));
                      const auto told = [&](const auto& write) {
                          EXPECT_TRUE(refusalOf(write).startsWith(QStringLiteral("Impossible d'écrire")));
                          EXPECT_EQ(contentOf(path), "VELO\r\n");
                      };
                      told([&] { writeWhole(path, "autre"); });
                      told([&] { writeLine(path, QStringLiteral("autre")); });
                      told([&] { job.savePdf(path); });
                      told([&] {
                          access::change(session, access::Secret::Password, QStringLiteral("NEUF"),
                                         QStringLiteral("NEUF"));
                      });
                      EXPECT_EQ(access::current(session), QStringLiteral("VELO"));
                      EXPECT_EQ(QDir(disk).entryList(QDir::Files | QDir::Hidden), (QStringList{"CODGES.SVI", "lest"}));
                  }),
              0);
}

TEST(SafeFiles, TakeThePlaceOfPlainFilesOnlyAndOfThoseMeant) {
    QTemporaryDir folder;
    const QString pipe = folder.filePath(QStringLiteral("tube")), link = folder.filePath(QStringLiteral("lien")),
                  file = folder.filePath(QStringLiteral("lettre.pdf"));
    ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("absent")), link));
    for (const QString& path : {pipe, link, folder.path()})
        EXPECT_TRUE(refusalOf([&] { writeWhole(path, "x"); }).endsWith(QStringLiteral("pas un fichier ordinaire")));
    EXPECT_FALSE(QFileInfo(pipe).isFile());
    writeWhole(file, "un", Existing::Refuse);
    EXPECT_NE(refusalOf([&] { writeWhole(file, "deux", Existing::Refuse); }), QStringLiteral("(accepté)"));
    EXPECT_EQ(contentOf(file), "un");
    EXPECT_EQ(freeName(file), folder.filePath(QStringLiteral("lettre-2.pdf")));
    writeWhole(file, "trois");
    EXPECT_EQ(contentOf(file), "trois");
}

} // namespace molven

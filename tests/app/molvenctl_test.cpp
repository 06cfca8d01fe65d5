#include "support/dossier.h"

#include "dossier/reference_files.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace molven {

namespace {

struct Outcome {
    int code;
    QString out, err;
};

Outcome molvenctl(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(MOLVEN_PROGRAMS "/molvenctl"), arguments);
    EXPECT_TRUE(process.waitForFinished(60'000));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

TEST(Molvenctl, EndsWithTwoForAWrongCall) {
    for (const QStringList& call : {QStringList{}, QStringList{"danse"}, QStringList{"check"},
                                    QStringList{"check", "a", "b"}, QStringList{"check", "a", "--rien"}}) {
        const Outcome outcome = molvenctl(call);
        EXPECT_EQ(outcome.code, 2) << call.join(u' ').toStdString();
        EXPECT_FALSE(outcome.err.isEmpty());
    }
}

TEST(Molvenctl, CreatesChecksAndTracesAnInstallation) {
    QTemporaryDir folder;
    const QString home = folder.filePath(QStringLiteral("l'installation"));
    EXPECT_EQ(molvenctl({"create", home, "--code", "LB", "--nom", "SOCIÉTÉ D'ÉTÉ"}).code, 0);
    const Outcome again = molvenctl({"create", home, "--code", "LB", "--nom", "X"});
    EXPECT_EQ(again.code, 1);
    EXPECT_FALSE(again.err.isEmpty());
    EXPECT_EQ(molvenctl({"check", home}).out, QStringLiteral("dossier sain\n"));
    EXPECT_EQ(molvenctl({"trace", home, "26030001"}).err, QStringLiteral("Immatriculation inconnue\n"));
    EXPECT_EQ(molvenctl({"rappel", home}).code, 1);
    QFile::remove(home + QStringLiteral("/data/mail.mdb"));
    const Outcome broken = molvenctl({"check", home, "--json"});
    EXPECT_EQ(broken.code, 1);
    EXPECT_EQ(QJsonDocument::fromJson(broken.out.toUtf8()).array().size(), 1);
    EXPECT_EQ(molvenctl({"check", folder.path()}).code, 1);
    EXPECT_EQ(molvenctl({"demo", folder.filePath(QStringLiteral("d")), "--unites", "-3"}).code, 1);
}

/// The table of words in the README says what the program says of itself.
TEST(Molvenctl, IsDescribedAsItDescribesItself) {
    QFile file(QStringLiteral(MOLVEN_SOURCES "/README.md"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList readme = QString::fromUtf8(file.readAll()).split(u'\n');
    int words = 0;
    for (const QString& line : molvenctl({}).err.split(u'\n')) {
        if (!line.startsWith(u"  ")) continue;
        const QString word = line.trimmed().section(u' ', 0, 0);
        const QStringList help = molvenctl({word, "--help"}).out.split(u'\n');
        QStringList options;
        for (const QString& one : help)
            if (one.startsWith(u"  --"))
                options.append(u'`' + one.trimmed().section(QStringLiteral("  "), 0, 0) + u'`');
        const QString arguments = help[0].section(word + u' ', 1).section(QStringLiteral(" ["), 0, 0);
        const QString row =
            QStringLiteral("| `%1` | `%2` | %3 | %4 |").arg(word, arguments, help[1], options.join(u' '));
        EXPECT_TRUE(readme.contains(row)) << row.toStdString();
        ++words;
    }
    EXPECT_GT(words, 20);
}

TEST(Molvenctl, TellsItsDeedsAsData) {
    test::Dossier dossier;
    const QString home = dossier.folder(), disk = home + QStringLiteral("/disque");
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const auto object = [](const QStringList& call) {
        return QJsonDocument::fromJson(molvenctl(call + QStringList{"--json"}).out.toUtf8()).object();
    };
    const auto array = [](const QStringList& call) {
        return QJsonDocument::fromJson(molvenctl(call + QStringList{"--json"}).out.toUtf8()).array();
    };
    dossier.document(QStringLiteral("FAC"), units);
    const QJsonObject saved = object({"sauvegarde", home, disk});
    EXPECT_GT(saved["fichiers"].toInt(), 5);
    EXPECT_TRUE(saved["defauts"].toArray().isEmpty());
    for (const char* word : {"archive", "reactive"}) {
        const QJsonArray moved = array({QString::fromLatin1(word), home, "--avant", "01/01/2100"});
        ASSERT_EQ(moved.size(), 5) << word;
        EXPECT_EQ(moved[1]["famille"].toString(), QStringLiteral("factures et avoirs"));
        EXPECT_EQ(moved[1]["deplaces"].toInt(), 1) << word;
        EXPECT_EQ(moved[4]["deplaces"].toInt(), 2) << word;
    }
    const QJsonObject restored = object({"restaurer", home, saved["dossier"].toString()});
    EXPECT_TRUE(restored["repris"].toArray().contains(QStringLiteral("molven.mdb")));
    EXPECT_TRUE(QFile::exists(restored["avant"].toString() + QStringLiteral("/molven.mdb")));
    const QJsonObject converted =
        object({"convertir", MOLVEN_SOURCES "/tests/data/jet", home + QStringLiteral("/repris")});
    EXPECT_GT(converted["tables"].toArray().size(), 20);
    for (const auto& table : converted["tables"].toArray())
        EXPECT_EQ(table[QStringLiteral("lus")].toInt(), table[QStringLiteral("repris")].toInt());
    EXPECT_TRUE(converted["defauts"].isArray());
    EXPECT_TRUE(QDir(converted["dossier"].toString()).exists(QStringLiteral("molven.mdb")));
}

TEST(Molvenctl, WritesAmountsAsTheirReaderDoes) {
    test::Dossier dossier;
    const QString home = dossier.folder();
    dossier.document(QStringLiteral("FAC"), dossier.receive(QStringLiteral("HIP"), 1));
    const QStringList control{"transfert-compta", home, "--au", "31/12/2026"};
    EXPECT_TRUE(molvenctl(control).out.contains(QStringLiteral("débit 94,95, crédit 94,95")))
        << molvenctl(control).out.toStdString();
    const QStringList entries = molvenctl(control + QStringList{"--csv"}).out.trimmed().split(u'\n');
    ASSERT_EQ(entries.size(), 4);
    EXPECT_TRUE(entries[1].contains(QStringLiteral(";94,95;"))) << entries[1].toStdString();
    EXPECT_EQ(QJsonDocument::fromJson(molvenctl(control + QStringList{"--json"}).out.toUtf8())["debit"].toDouble(),
              94.95);
}

TEST(Molvenctl, CountsStocksAgain) {
    test::Dossier dossier;
    const QString home = dossier.folder();
    dossier.receive(QStringLiteral("HIP"), 2);
    Workspace workspace;
    workspace.open(dossier.session.molven()).firstValue(QStringLiteral("update strarticle set art_stk=9"));
    EXPECT_EQ(molvenctl({"recalcul", home}).out, QStringLiteral("articles suivis : 3 articles, 3 de stock changé\n"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    const Outcome rebuilt = molvenctl({"recalcul", home, "--du", "01/01/2026", "--au", "31/12/2026", "--json"});
    const QJsonObject told = QJsonDocument::fromJson(rebuilt.out.toUtf8()).object();
    EXPECT_EQ(told["corriges"].toInt(), 3);
    EXPECT_EQ(told["dossiers_absents"].toArray().size(), 3);
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal());
    EXPECT_EQ(molvenctl({"recalcul", home, "--du", "01/01/2026"}).err, QStringLiteral("saisir une date\n"));
}

TEST(Molvenctl, KeepsTheAddressOfTheCompany) {
    test::Dossier dossier;
    const QString home = dossier.folder();
    EXPECT_EQ(molvenctl({"societe", home, "--adresse", "12 RUE DES LILAS", "--adresse", "69003 LYON"}).code, 0);
    EXPECT_EQ(molvenctl({"societe", home, "--adresse", QString(41, u'x')}).code, 1);
    EXPECT_EQ(molvenctl({"societe", home}).out.section(u'\n', 1), QStringLiteral("12 RUE DES LILAS\n69003 LYON\n"));
}

TEST(Molvenctl, SavesAnInvoiceAsItIsPrinted) {
    test::Dossier dossier;
    const QString home = dossier.folder(), path = home + QStringLiteral("/l'avoir.pdf");
    const QString number = dossier.document(QStringLiteral("FAC"), dossier.receive(QStringLiteral("HIP"), 1));
    EXPECT_EQ(molvenctl({"facture", home, number}).code, 1) << "nothing to write";
    const QString refused = molvenctl({"facture", home, "77", "--pdf", path}).err;
    EXPECT_TRUE(refused.endsWith(QStringLiteral("Aucun document correspondant à ce critère\n"))) // behind the toolkit's
        << refused.toStdString();
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(molvenctl({"facture", home, "1", "--annee", "2026", "--pdf", path}).code, 0);
    EXPECT_EQ(molvenctl({"facture", home, "1", "--pdf", path}).code, 1) << "it replaces nothing unasked";
    EXPECT_EQ(molvenctl({"facture", home, "1", "--pdf", path, "--remplacer"}).code, 0);
    EXPECT_EQ(molvenctl({"facture", home, "1", "--pdf", dossier.session.molven(), "--remplacer"}).code, 1);
    EXPECT_EQ(molvenctl({"sauvegarde", home, home + QStringLiteral("/absent/disque")}).code, 1);
    QProcess text;
    text.start(QStringLiteral("pdftotext"), {path, QStringLiteral("-")});
    ASSERT_TRUE(text.waitForFinished(60'000));
    const QString page = QString::fromUtf8(text.readAllStandardOutput());
    for (const QString& printed : {number, QStringLiteral("CLINIQUE DE L'ÉTOILE"), QStringLiteral("N° Lot : LOT-1")})
        EXPECT_TRUE(page.contains(printed)) << printed.toStdString() << " in\n" << page.toStdString();
}

TEST(Molvenctl, ListsARecallAsATableAndAsData) {
    test::Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    dossier.document(QStringLiteral("FAC"), {units[0]});
    const QString home = dossier.folder();
    const Outcome table = molvenctl({"rappel", home, "--lot", "lot-1", "--csv"});
    EXPECT_EQ(table.code, 0);
    const QStringList lines = table.out.trimmed().split(u'\n');
    ASSERT_EQ(lines.size(), 3);
    for (const QString& line : lines) EXPECT_EQ(line.count(u';'), lines[0].count(u';')) << line.toStdString();
    const QJsonArray data =
        QJsonDocument::fromJson(molvenctl({"rappel", home, "--article", "HIP", "--json"}).out.toUtf8()).array();
    ASSERT_EQ(data.size(), 2);
    EXPECT_EQ(data[1][QStringLiteral("rap_pat")].toString(), QStringLiteral("D'ALMEIDA Hélène"));
    EXPECT_EQ(data[0][QStringLiteral("rap_pat")].toString(), QString());
    const QJsonObject history =
        QJsonDocument::fromJson(molvenctl({"trace", home, units[0], "--json"}).out.toUtf8()).object();
    EXPECT_EQ(history.value(QStringLiteral("immatriculation")).toString(), units[0]);
    EXPECT_EQ(molvenctl({"rappel", home, "--lot", "RIEN", "--json"}).code, 1);
}

TEST(Molvenctl, TellsWhatTheDepotsLack) {
    test::Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 1);
    reference_files::bringIn(dossier.session, QStringLiteral("dotations"),
                             "dot_dep;dot_ref;dot_qte\n101;HIP;3\n102;CUP;1\n");
    const QString home = dossier.folder();
    EXPECT_EQ(molvenctl({"reassort", home}).out, QStringLiteral("101 HIP : manque 3, à transférer 1, à acheter 2\n"
                                                                "102 CUP : manque 1, à transférer 0, à acheter 1\n"
                                                                "à transférer : 1, à acheter : 3\n"));
    const QJsonArray one =
        QJsonDocument::fromJson(molvenctl({"reassort", home, "--depot", "102", "--json"}).out.toUtf8()).array();
    ASSERT_EQ(one.size(), 1);
    EXPECT_EQ(one[0][QStringLiteral("rea_clt")].toString(), QStringLiteral("000002"));
    EXPECT_EQ(one[0][QStringLiteral("rea_ach")].toInt(), 1);
    EXPECT_EQ(molvenctl({"reassort", home, "--depot", "999"}).code, 1);
}

TEST(Molvenctl, TellsWhoChangedWhatAndFindsAnAlteredJournal) {
    test::Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const QString home = dossier.folder();
    const QStringList lines = molvenctl({"journal", home, "--immat", units[0], "--csv"}).out.trimmed().split(u'\n');
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[1].contains(QStringLiteral("Réception"))) << lines[1].toStdString();
    const QJsonArray data =
        QJsonDocument::fromJson(molvenctl({"journal", home, "--article", "HIP", "--json"}).out.toUtf8()).array();
    EXPECT_EQ(data[0][QStringLiteral("his_txt")].toString(), QStringLiteral("Création"));
    EXPECT_EQ(molvenctl({"journal", home, "--au", "01/01/2001"}).out, QStringLiteral("changements : 0\n"));
    EXPECT_EQ(molvenctl({"journal", home, "--immat", "1", "--client", "1"}).code, 1);
    {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        molven.firstValue(QStringLiteral("update strjournal set jou_dat='20010101'"));
        dossier.receive(QStringLiteral("HIP"), 1);
        molven.firstValue(QStringLiteral("update strjournal set jou_uti='AUTRE' where rowid=1"));
    }
    EXPECT_TRUE(molvenctl({"check", home}).out.contains(QStringLiteral("scellés le 01/01/2001")));
}

TEST(Molvenctl, TellsHowFarItIsWithAnOlderDossierAndThatOnce) {
    test::Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 3);
    {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        for (const char* sql : {"delete from strjournal", "pragma user_version=2"})
            molven.firstValue(QString::fromLatin1(sql));
    }
    const Outcome first = molvenctl({"journal", dossier.folder(), "--article", "HIP"});
    EXPECT_TRUE(first.err.contains(QStringLiteral("mise à jour de molven.mdb : "))) << first.err.toStdString();
    EXPECT_EQ(first.code, 0);
    EXPECT_FALSE(molvenctl({"journal", dossier.folder()}).err.contains(QStringLiteral("mise à jour")));
}

TEST(Molvenctl, WritesOverNothingUnaskedAndTellsWhatItCouldNotWrite) {
    test::Dossier dossier;
    const QString home = dossier.folder(), file = home + QStringLiteral("/lpp.csv");
    EXPECT_EQ(molvenctl({"export", home, "lpp", file}).code, 0);
    const Outcome again = molvenctl({"export", home, "lpp", file});
    EXPECT_EQ(again.code, 1);
    EXPECT_TRUE(again.err.contains(QStringLiteral("--remplacer"))) << again.err.toStdString();
    EXPECT_EQ(molvenctl({"export", home, "lpp", file, "--remplacer"}).code, 0);
    EXPECT_EQ(molvenctl({"export", home, "lpp", QStringLiteral("/dev/null"), "--remplacer"}).code, 1);
    EXPECT_EQ(molvenctl({"import", home, "articles", file}).code, 1);
    QProcess onFullDisk;
    onFullDisk.setStandardOutputFile(QStringLiteral("/dev/full"));
    onFullDisk.start(QStringLiteral(MOLVEN_PROGRAMS "/molvenctl"), {"check", home});
    EXPECT_TRUE(onFullDisk.waitForFinished(60'000));
    EXPECT_EQ(onFullDisk.exitCode(), 1);
    EXPECT_EQ(molvenctl({"restaurer", home, home + QStringLiteral("/rien")}).code, 1);
}

} // namespace molven

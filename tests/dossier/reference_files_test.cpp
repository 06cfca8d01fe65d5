#include "support/dossier.h"

#include "data/csv.h"
#include "dossier/reference_files.h"
#include "reference/articles.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

TEST(CsvFiles, AreReadAsSpreadsheetsWriteThem) {
    const QList<csv::Row> rows = csv::read("a;b\r\n\"x;y\";\"dit \"\"oui\"\"\"\r\n\r\n\"deux\nlignes\"; z \n");
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[1].cells, (QStringList{"x;y", "dit \"oui\""}));
    EXPECT_EQ(rows[2].cells, (QStringList{"deux\nlignes", "z"}));
    EXPECT_EQ(rows[2].line, 4);
    EXPECT_EQ(csv::read("a,b\n1;2,3").last().cells, (QStringList{"1;2", "3"}));
    EXPECT_EQ(csv::read("\xEF\xBB\xBF\xC3\xA9t\xC3\xA9").first().cells, QStringList("été"));
    EXPECT_EQ(csv::read("c\x9Cur \x80 \xE9t\xE9").first().cells, QStringList("cœur € été"));
    EXPECT_EQ(
        csv::read(csv::file(csv::line({QStringLiteral("a;\"b\"\nc"), QString(), QStringLiteral("é")}))).first().cells,
        (QStringList{"a;\"b\"\nc", "", "é"}));
}

TEST(ReferenceFiles, ComeInWholeOrNotAtAllWithEachFaultyLine) {
    Dossier dossier;
    const auto bringIn = [&](const char* kind, const QByteArray& file) {
        const auto outcome = reference_files::bringIn(dossier.session, QString::fromLatin1(kind), file);
        QStringList told;
        for (const reference_files::Fault& fault : outcome.faults)
            told.append(QStringLiteral("%1 %2").arg(fault.line).arg(fault.text));
        return told.isEmpty() ? QString::number(outcome.written) : told.join(u'|');
    };
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());

    EXPECT_EQ(
        bringIn("lpp", "lpp_code;lpp_lib;lpp_ttc\n3200001;A;10,5\n3200002;;1\n3200001;B;2\n3200003;C;x\n3200004;D\n"),
        QStringLiteral(
            "3 Libellé obligatoire|4 déjà en ligne 2|5 Valeur numérique incorrecte : x|6 2 colonnes au lieu de 3"));
    EXPECT_EQ(molven.count(strlpp), 1);
    EXPECT_EQ(bringIn("lpp", "lpp_code;lpp_lib;lpp_ttc\n3200001;\"L'ESSAI; été\";10,5\n3100001;COTYLE;99.9\n"),
              QStringLiteral("2"));
    EXPECT_EQ(molven.find(strlpp, strlpp.lpp_code == QStringLiteral("3100001"))->value(strlpp.lpp_ttc),
              QStringLiteral("99.9"));
    EXPECT_EQ(bringIn("lpp", "lpp_lib;inconnu\nx;y\n"),
              QStringLiteral("1 champ inconnu : inconnu|1 champ absent : lpp_code"));
    EXPECT_EQ(bringIn("lpp", "lpp_code;lpp_lib;LPP_LIB\nx;y;z\n"), QStringLiteral("1 champ en double : LPP_LIB"));
    EXPECT_EQ(bringIn("lpp", "lpp_code;lpp_lib;lpp_ttc\n7;A;" + QByteArray(400, '9') + "\n8;\"B;1\n9;C;1\n"),
              QStringLiteral("2 Nombre de plus de 15 chiffres : %1...|3 guillemet ouvert et jamais fermé")
                  .arg(QString(20, u'9')));
    EXPECT_EQ(bringIn("clients", "clt_cod;clt_nom;clt_rgt\n3;CLINIQUE NEUVE;01\n1;;01\n"),
              QStringLiteral("3 Nom obligatoire"));
    EXPECT_EQ(bringIn("clients", "clt_cod;clt_tel1\n1;0400000000\n"), QStringLiteral("1"));
    EXPECT_EQ(molven.find(strclient, strclient.clt_cod == QStringLiteral("000001"))->value(strclient.clt_nom),
              QStringLiteral("CLINIQUE DE L'ÉTOILE"));
    EXPECT_EQ(bringIn("tarifs", "tar_clt,tar_ref,tar_pvt\n1,HIP,12.5\n1,RIEN,1\n"),
              QStringLiteral("3 Cet article n'existe pas"));
    EXPECT_EQ(bringIn("fournisseurs", "fou_cod;fou_nom;fou_rglt\n9;NEUF;77\n"),
              QStringLiteral("2 Mode de règlement inconnu"));
    EXPECT_EQ(bringIn("articles", "art_ref;art_li1;art_aig;art_typ\nN1;NEUF;O;\n"),
              QStringLiteral("2 Type F/N/G obligatoire"));
    EXPECT_EQ(bringIn("articles", "art_ref;art_li1\n" + QByteArray(60, 'R') + ";X\n").left(1), QStringLiteral("2"));
    EXPECT_EQ(refusalOf([&] { bringIn("autre", "a\n"); }).left(16), QStringLiteral("Fichier inconnu "));
}

TEST(CsvFiles, TellEachRowThatCannotBeRead) {
    const auto faults = [](const QByteArray& bytes) {
        QStringList told;
        for (const csv::Row& row : csv::read(bytes))
            if (!row.fault.isEmpty()) told.append(QStringLiteral("%1 %2").arg(row.line).arg(row.fault));
        return told.join(u'|');
    };
    EXPECT_EQ(faults("a;b\n1;\"deux\n3;4\n5;6\n"), QStringLiteral("2 guillemet ouvert et jamais fermé"));
    EXPECT_EQ(faults("a;b\n1;\"deux\n3;\"4\n5;6\n"), QStringLiteral("2 texte derrière un guillemet fermant"));
    EXPECT_EQ(faults("\xC3\xA9t\xC3\xA9;b\nH\xD4PITAL;2\nx;y\n"),
              QStringLiteral("2 caractère illisible : la ligne n'est pas en UTF-8 comme le reste du fichier"));
    EXPECT_EQ(faults(QByteArray("a;b\n1;x\0y\n", 10)), QStringLiteral("2 caractère interdit, de code 0"));
    EXPECT_EQ(faults("a;b\n1;\x81\n"), QStringLiteral("2 caractère interdit, de code 129"));
    EXPECT_EQ(faults("a;b\n1;" + QByteArray(40'000, 'x') + "\n"),
              QStringLiteral("2 texte trop long : 40000 caractères, 32767 au plus"));
    EXPECT_EQ(faults("a;b\r\n\"un\r\ndeux\" ;\tx\r\n"), QString());
}

TEST(CsvFiles, ShowFormulasWithoutRunningThemAndReadThemBack) {
    const QStringList cells{"=cmd|' /C calc'!A0", "+33 (0)4", "@SUM(A1)", "-", "'=1", "''", "L'ESSAI", "-12,5", "+3",
                            "-1 234,50"};
    const QString line = csv::line(cells);
    EXPECT_EQ(line,
              QStringLiteral("'=cmd|' /C calc'!A0;'+33 (0)4;'@SUM(A1);'-;''=1;'';L'ESSAI;-12,5;+3;-1 234,50\r\n"));
    EXPECT_EQ(csv::read(line.toUtf8()).first().cells, cells);
}

TEST(ReferenceFiles, LeaveStockAndAveragePricesToReceipts) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 3);
    const QString articles = QStringLiteral("articles");
    const QByteArray file = reference_files::takeOut(dossier.session, articles);
    dossier.receive(QStringLiteral("HIP"), 2);
    const QByteArray later = reference_files::takeOut(dossier.session, articles);
    EXPECT_NE(later, file);
    const auto outcome = reference_files::bringIn(dossier.session, articles, file);
    EXPECT_EQ(outcome.ignored, (QStringList{"art_pam", "art_dpa", "art_stk", "art_cdec", "art_cdef", "stk1_art",
                                            "stk2_art", "stk3_art"}));
    EXPECT_TRUE(outcome.faults.isEmpty());
    EXPECT_EQ(reference_files::takeOut(dossier.session, articles), later);
}

TEST(ReferenceFiles, TakenOutOfOneDossierComeIntoAnother) {
    Dossier first, second;
    for (const QString& kind : reference_files::kinds()) {
        const QByteArray file = reference_files::takeOut(first.session, kind);
        const auto outcome = reference_files::bringIn(second.session, kind, file);
        EXPECT_TRUE(outcome.faults.isEmpty())
            << kind.toStdString() << " " << outcome.faults.value(0).text.toStdString();
        EXPECT_EQ(reference_files::takeOut(second.session, kind), file) << kind.toStdString();
    }
}

} // namespace molven

#include "play/player.h"

#include "support/dossier.h"

#include <QDir>
#include <QFile>

namespace molven {

namespace {

class Playing : public testing::Test {
protected:
    QString play(const QByteArray& text, const QString& name = QStringLiteral("essai.scn")) {
        const QString path = folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        QString failure = play::Player(dossier.folder(), folder.path()).play(path);
        return failure.replace(folder.path() + u'/', QString());
    }

    test::Dossier dossier;
    QTemporaryDir folder;
};

const QByteArray Entrance = "today 05/03/2026\nstart\nwrite CODGES.SVI clef\nset Text1 clef\npress Btok\nform Tmenu\n";

struct PlayCase {
    const char* name;
    const char* text; ///< behind the entrance, line 7 first
    const char* failure;
};

} // namespace

TEST(ScenarioLines, AreCutAtBlanksOutsideQuotes) {
    EXPECT_EQ(play::words(QStringLiteral("says \"il dit \"\"oui\"\"\"  fin # note")),
              (QStringList{"says", "il dit \"oui\"", "fin"}));
    EXPECT_EQ(play::words(QStringLiteral("set a \"\"")), (QStringList{"set", "a", ""}));
    EXPECT_EQ(play::words(QStringLiteral("  # rien")), QStringList());
    EXPECT_EQ(play::words(QStringLiteral("title \"N# 1\"")), (QStringList{"title", "N# 1"}));
    EXPECT_THROW(play::words(QStringLiteral("says \"ouvert")), play::Failure);
}

class Plays : public Playing, public testing::WithParamInterface<PlayCase> {};

TEST_P(Plays, HoldOrTellWhatWasExpectedAndFound) {
    const QString failure = play(Entrance + GetParam().text);
    const QString expected = QString::fromUtf8(GetParam().failure);
    EXPECT_TRUE(expected.isEmpty() ? failure.isEmpty() : failure.startsWith(expected)) << failure.toStdString();
    EXPECT_EQ(QFile::exists(folder.filePath(QStringLiteral("essai-echec.png"))), !expected.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Statements, Plays,
    testing::Values(
        PlayCase{"held",
                 "title~ TRACABILITE\nmenu mnu_div_imm\nform T_traimm\nset txtimm 26030001\nshows txtimm "
                 "26030001\npress cmdvalide\n"
                 "says \"Immatriculation inconnue\"\nfocus txtimm\nrows DBGrid1 0\npicture image\nkey txtimm "
                 "Escape\nclosed T_traimm\n"
                 "data molven.mdb \"select count(*) from strproduit\" 0\n",
                 ""},
        PlayCase{"message", "menu mnu_div_imm\nform T_traimm\npress cmdvalide\nsays \"Autre texte\"\n",
                 "essai.scn:10: message \"Autre texte\" attendu, trouvé \"Immatriculation inconnue\""},
        PlayCase{"leftover", "menu mnu_div_imm\nform T_traimm\npress cmdvalide\n",
                 "essai.scn:9: aucun message en attente à la fin, trouvé \"Immatriculation inconnue\""},
        PlayCase{"silent", "silent\nmenu mnu_div_imm\nform T_traimm\npress cmdvalide\nsilent\n",
                 "essai.scn:11: aucun message attendu"},
        PlayCase{"question", "menu mnu_util_num_fac\n",
                 "essai.scn:7: réponse prête attendue pour la question \"Changement Numéro des Factures ?\""},
        PlayCase{"answered",
                 "answer no\nmenu mnu_util_num_fac\nsays \"Changement Numéro des Factures ?\"\nsays \"traitement "
                 "abandonné\"\n",
                 ""},
        PlayCase{"window", "closed Tcsecret\nclosed Tmenu\n", "essai.scn:8: fenêtre Tmenu fermée attendue"},
        PlayCase{"title", "title MOLVEN\n", "essai.scn:7: titre \"MOLVEN\" attendu, trouvé \"MOLVEN - LOGICIEL"},
        PlayCase{"unavailable", "disabled mnu_div_vir\nmenu mnu_div_imm_vir\n",
                 "essai.scn:8: entrée de menu mnu_div_imm_vir disponible attendue"},
        PlayCase{"unknown entry", "menu mnu_absent\n", "essai.scn:7: entrée de menu mnu_absent attendue"},
        PlayCase{"readonly", "menu mnu_vte_liv_ges\nform T_gestion\nset txtpat 1\n",
                 "essai.scn:9: zone txtpat ouverte à la saisie attendue"},
        PlayCase{"disabled button", "menu mnu_vte_liv_ges\nform T_gestion\npress Cmdsup\n",
                 "essai.scn:9: contrôle Cmdsup actif attendu"},
        PlayCase{"hidden box", "menu mnu_vte_liv_ges\nform T_gestion\nhidden txtref\nset txtref HIP\n",
                 "essai.scn:10: contrôle txtref visible attendu"},
        PlayCase{"no control", "press Cmdrien\n", "essai.scn:7: contrôle Cmdrien attendu dans Tmenu"},
        PlayCase{"no row", "menu mnu1_fic_par_dep\nform T_param\nrow DBGrid1 77\n",
                 "essai.scn:9: ligne 77 attendue dans DBGrid1, 4 lignes"},
        PlayCase{"cell",
                 "menu mnu1_fic_par_dep\nform T_param\nrow DBGrid1 num_par=102\nshows txtlib_par \"DEPOT 102\"\ncell "
                 "DBGrid1 1 Code 001\ncell DBGrid1 1 lib_par X\n",
                 "essai.scn:12: DBGrid1, ligne 1, lib_par : \"X\" attendu, trouvé \"DEPOT PRINCIPAL\""},
        PlayCase{"data", "data molven.mdb \"select spe_cod from strspecif\" LB\n",
                 "essai.scn:7: molven.mdb : select spe_cod from strspecif : \"LB\" attendu, trouvé \"CE\""},
        PlayCase{"bad sql", "data molven.mdb \"select x from y\" 1\n", "essai.scn:7: molven.mdb : select x from y : "},
        PlayCase{"nothing printed", "printed X\n", "essai.scn:7: impression attendue, aucune"},
        PlayCase{"word", "dance\n", "essai.scn:7: mot connu attendu, trouvé dance"},
        PlayCase{"count", "press\n", "essai.scn:7: press attend 1 valeurs, trouvé 0"},
        PlayCase{"date", "today hier\n", "essai.scn:7: date JJ/MM/AAAA attendue"},
        PlayCase{"key", "key mnu1_fic Bip\n", "essai.scn:7: "},
        PlayCase{"files", "write A.TXT \"un texte\"\ncopy A.TXT B.TXT\nremove A.TXT\nremove A.TXT\n",
                 "essai.scn:10: fichier A.TXT attendu, absent"}),
    [](const auto& test) { return QString::fromLatin1(test.param.name).replace(u' ', u'_').toStdString(); });

TEST_F(Playing, IncludedFilesTellTheirOwnLines) {
    QFile part(folder.filePath(QStringLiteral("partie.scn")));
    ASSERT_TRUE(part.open(QIODevice::WriteOnly));
    part.write("title~ MOLVEN\n\ntitle FAUX\n");
    part.close();
    EXPECT_TRUE(
        play(Entrance + "include partie.scn\n").startsWith(QStringLiteral("partie.scn:3: titre \"FAUX\" attendu")));
    EXPECT_TRUE(play("include essai.scn\n").startsWith(QStringLiteral("essai.scn:1: essai.scn s'inclut lui-même")));
    EXPECT_TRUE(play("form Tmenu\n").startsWith(QStringLiteral("essai.scn:1: programme lancé attendu")));
}

TEST_F(Playing, AListIsFilteredAndChosenByKeyboard) {
    EXPECT_EQ(play(Entrance +
                   "menu mnu1_fic_par_dep\nform T_param\nrows DBGrid1 4\nkey DBGrid1 1\nkey DBGrid1 0\nrows DBGrid1 "
                   "2\nkey DBGrid1 2\nrows DBGrid1 1\n"
                   "key DBGrid1 Backspace\nrows DBGrid1 2\nkey DBGrid1 Escape\nrows DBGrid1 4\nkey DBGrid1 Return\n"
                   "shows Txtnum 001\nkey DBGrid1 Escape\nclosed T_param\n"),
              QString());
}

} // namespace molven

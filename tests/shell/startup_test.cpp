#include "support/dossier.h"

#include "dossier/creation.h"
#include "shell/access.h"
#include "shell/folder_files.h"
#include "shell/menu_tree.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QFile>
#include <QSet>

namespace molven {

using test::refusalOf;

namespace {

class Installation : public testing::Test {
protected:
    void create(const char* company, bool listed = false) {
        session = {};
        creation::create({folder.path(), QString::fromLatin1(company),
                          QStringLiteral("SOCIETE %1").arg(QString::fromLatin1(company)), listed});
        session.dossier_app = folder.path();
    }
    void write(const char* name, const QByteArray& content) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray read(const char* name) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(absent)");
    }
    void open() {
        startup::readCompany(session);
        ASSERT_TRUE(startup::readFolders(session));
        startup::openDossier(session);
    }
    void setCompany(const char* code) {
        Workspace workspace;
        workspace.open(session.chemin_base + QStringLiteral("molven.mdb"))
            .update(strspecif, {{strspecif.spe_cod, QString::fromLatin1(code)}}, {});
    }

    QTemporaryDir folder;
    Session session;
};

struct PathCase {
    const char* line;
    const char* folder; ///< below the program folder, or absolute
};

} // namespace

class FolderPaths : public testing::TestWithParam<PathCase> {};

TEST_P(FolderPaths, AreReadAsWrittenByHandOrByWindows) {
    const QString expected = QString::fromUtf8(GetParam().folder);
    EXPECT_EQ(usableFolder(QStringLiteral("/prog"), QString::fromUtf8(GetParam().line)), expected);
}

INSTANTIATE_TEST_SUITE_P(FolderFiles, FolderPaths,
                         testing::Values(PathCase{"data\\", "/prog/data/"}, PathCase{"  data  ", "/prog/data/"},
                                         PathCase{"/srv/molven/", "/srv/molven/"},
                                         PathCase{"/srv/molven", "/srv/molven/"},
                                         PathCase{"..\\commun\\données\\", "/commun/données/"},
                                         PathCase{"d'essai/x", "/prog/d'essai/x/"}));

TEST_F(Installation, WithoutItsFoldersSaysWhichFileIsMissing) {
    create("CE");
    QFile::remove(folder.filePath(QStringLiteral("CHEMIN.HC")));
    EXPECT_EQ(refusalOf([&] { startup::readCompany(session); }), QStringLiteral(" Le fichier > ") +
                                                                     folder.filePath(QStringLiteral("CHEMIN.HC")) +
                                                                     QStringLiteral(" n'existe pas "));
    write("CHEMIN.HC", "ailleurs\\\r\nseconde ligne");
    EXPECT_EQ(test::dataErrorOf([&] { startup::readCompany(session); }), DataError::CannotOpen);
}

TEST_F(Installation, WithOneDossierOpensItAtOnce) {
    create("CE");
    open();
    EXPECT_EQ(startup::mainTitle(session), QStringLiteral("MOLVEN - LOGICIEL DE TRACABILITE : SOCIETE CE"));
    EXPECT_EQ(session.vente(), folder.path() + QStringLiteral("/data/vente.mdb"));
    EXPECT_TRUE(startup::logoFile(session, session.spe_cod).endsWith(QStringLiteral("/logo_CE.BMP")));
    EXPECT_TRUE(startup::logoFile(session, QStringLiteral("EO")).endsWith(QStringLiteral("/logo_EO.JPG")));
}

TEST_F(Installation, OfCompanyEoWorksAsAd) {
    create("EO");
    open();
    EXPECT_EQ(session.code_soc + session.mot_dossier, QStringLiteral("ADEO"));
    EXPECT_TRUE(session.rules().hasSubFamilies());
}

TEST_F(Installation, OfCompanyImUsesTheSecondSitesSalesFile) {
    create("IM");
    startup::readCompany(session);
    write("CODGES.SVI", "GV\r\n");
    access::login(session, QStringLiteral("GV"));
    ASSERT_TRUE(startup::readFolders(session));
    startup::openDossier(session);
    EXPECT_EQ(startup::mainTitle(session), QStringLiteral("MOLVEN - LOGICIEL DE TRACABILITE : SOCIETE IMGV"));
    EXPECT_EQ(session.vente(), folder.path() + QStringLiteral("/gv/vente.mdb"));
    EXPECT_EQ(session.molven(), folder.path() + QStringLiteral("/data/molven.mdb"));
    QFile::remove(folder.filePath(QStringLiteral("CHEMIN_GV.HC")));
    EXPECT_TRUE(refusalOf([&] { startup::readFolders(session); }).contains(QStringLiteral("CHEMIN_GV.HC")));
}

TEST_F(Installation, WithSeveralDossiersAsksTheWordAndFindsTheUsersOwnFolder) {
    create("CE", true);
    {
        Workspace workspace;
        Database societe = workspace.open(folder.filePath(QStringLiteral("societe.mdb")));
        societe.update(
            strsociete,
            {{strsociete.soc_mot, QStringLiteral("IM ")}, {strsociete.soc_utilisateur, QStringLiteral("P1")}}, {});
    }
    startup::readCompany(session);
    ASSERT_FALSE(startup::readFolders(session));
    const Record dossier = startup::dossiers(session).first();
    EXPECT_EQ(refusalOf([&] { startup::chooseDossier(session, dossier, QStringLiteral("AUTRE")); }),
              QStringLiteral(" Mot de Passe Incorrect"));
    startup::chooseDossier(session, dossier, QStringLiteral(" im"));
    EXPECT_EQ(session.chemin_util, session.chemin_base + QStringLiteral("P1/"));
    EXPECT_EQ(session.path(DataFile::Proforma), session.chemin_base + QStringLiteral("P1/proforma.mdb"));
    startup::openDossier(session);
    EXPECT_EQ(startup::mainTitle(session),
              QStringLiteral("MOLVEN - LOGICIEL DE TRACABILITE : SOCIETE CE - Dossier : P1"));

    Record whole = dossier;
    whole[strsociete.soc_utilisateur] = QStringLiteral("**");
    startup::chooseDossier(session, whole, QStringLiteral("IM"));
    EXPECT_EQ(session.chemin_util, session.chemin_base);
    EXPECT_EQ(session.util_dossier, QString());
    whole[strsociete.soc_mot] = QStringLiteral("minuscule");
    EXPECT_EQ(refusalOf([&] { startup::chooseDossier(session, whole, QStringLiteral("minuscule")); }),
              QStringLiteral(" Mot de Passe Incorrect"));
}

namespace {

/// The dossier table as versions before user folders made it.
struct OldDossiers : Table {
    using Table::Table;
    Label soc_nom{this, "soc_nom", 60};
    Label soc_chemin{this, "soc_chemin", 255};
    Text soc_mot{this, "soc_mot", 20};
};

} // namespace

TEST_F(Installation, GivesAnOldDossierFileItsUserField) {
    create("CE");
    const OldDossiers old("strsociete");
    const QString path = folder.filePath(QStringLiteral("societe.mdb"));
    Database::create(path, {&old});
    {
        Workspace workspace;
        Record row(old);
        row[old.soc_nom] = QStringLiteral("ANCIEN");
        workspace.open(path).insert(row);
    }
    startup::readCompany(session);
    ASSERT_FALSE(startup::readFolders(session));
    for (int start = 0; start < 2; ++start)
        EXPECT_EQ(startup::dossiers(session).first()[strsociete.soc_utilisateur], QStringLiteral("**"));
}

namespace {

struct LoginCase {
    const char* company;
    const char* stored;
    const char* typed;
    const char* outcome; ///< "A"ccepted, "P"ersonalise, "R"efused
};

} // namespace

class Logins : public Installation, public testing::WithParamInterface<LoginCase> {};

TEST_P(Logins, AreAcceptedByCompany) {
    const LoginCase& c = GetParam();
    create(c.company);
    startup::readCompany(session);
    write("CODGES.SVI", c.stored);
    QString outcome = QStringLiteral("R");
    const QString refused = refusalOf([&] {
        outcome = access::login(session, QString::fromUtf8(c.typed)) == access::Login::Accepted ? QStringLiteral("A")
                                                                                                : QStringLiteral("P");
    });
    EXPECT_EQ(outcome, QString::fromLatin1(c.outcome));
    EXPECT_EQ(refused, outcome == u"R" ? QStringLiteral("Mot de passe incorrect") : QStringLiteral("(accepté)"));
    EXPECT_EQ(read("CODGES.SVI"), QByteArray(c.stored));
}

INSTANTIATE_TEST_SUITE_P(ByCompany, Logins,
                         testing::Values(LoginCase{"CE", " secret \r\n", "secret", "A"},
                                         LoginCase{"CE", "secret", " secret ", "A"},
                                         LoginCase{"CE", "secret", "Secret", "R"}, LoginCase{"CE", "secret", "", "R"},
                                         LoginCase{"CE", "secret", "RZ", "P"}, LoginCase{"MD", "secret", "RZ", "R"},
                                         LoginCase{"IM", "secret", "RZ", "R"}, LoginCase{"IM", "secret", "secret", "A"},
                                         LoginCase{"MD", "clé d'accès", "clé d'accès", "A"}));

TEST_F(Installation, StoresTheFirstWordAndLetsItBeChanged) {
    create("CE");
    startup::readCompany(session);
    EXPECT_EQ(access::current(session), QStringLiteral("VELO"));
    EXPECT_EQ(access::login(session, QStringLiteral(" premier ")), access::Login::Stored);
    EXPECT_EQ(read("CODGES.SVI"), QByteArray("premier\r\n"));
    EXPECT_EQ(access::login(session, QStringLiteral("premier")), access::Login::Accepted);
    EXPECT_EQ(refusalOf([&] { access::checkCurrent(session, access::Secret::Password, QStringLiteral("VELO")); }),
              QStringLiteral("Mot de passe incorrect"));
    EXPECT_EQ(
        refusalOf([&] { access::change(session, access::Secret::Password, QStringLiteral("a"), QStringLiteral("b")); }),
        QStringLiteral("Mot de passe incorrect"));
    EXPECT_EQ(refusalOf([&] { access::change(session, access::Secret::ManagerCode, QString(), QString()); }),
              QStringLiteral("Code gestionnaire incorrect"));
    EXPECT_EQ(read("CODGES.SVI"), QByteArray("premier\r\n"));
    access::change(session, access::Secret::Password, QStringLiteral(" second "), QStringLiteral("second"));
    EXPECT_EQ(read("CODGES.SVI"), QByteArray("second\r\n"));
    access::change(session, access::Secret::ManagerCode, QStringLiteral("LB"), QStringLiteral("LB"));
    EXPECT_EQ(session.code_soc, QStringLiteral("LB"));
}

TEST(MenuTree, HasOneEntryANameAndAScreenBehindEveryLeaf) {
    QSet<QString> names;
    int depth = 0;
    for (const MenuEntry& entry : menuTree()) {
        EXPECT_FALSE(names.contains(entry.name)) << entry.name.toStdString();
        names.insert(entry.name);
        EXPECT_LE(entry.depth, depth + 1) << entry.name.toStdString();
        depth = entry.action == MenuAction::Submenu ? entry.depth : entry.depth - 1;
        const bool opens = entry.action == MenuAction::Screen || entry.action == MenuAction::Program;
        EXPECT_EQ(opens && entry.target.isEmpty(), false) << entry.name.toStdString();
    }
}

/// Two entries of one menu with the same letter cost a key more: an entry of the program's own takes a free one.
TEST(MenuTree, LeavesTheLettersOfItsEntriesAlone) {
    const QStringList own{QStringLiteral("mnu1_fic_par_dot"), QStringLiteral("mnu2_stk_edt_invdep"),
                          QStringLiteral("mnu_vte_btr_rea"),  QStringLiteral("mnu_vte_fac_ost"),
                          QStringLiteral("mnu_vte_int_fx"),   QStringLiteral("mnu_div_rap")};
    QStringList parents;
    QMap<QString, QStringList> letters;
    for (const MenuEntry& entry : menuTree()) {
        parents = parents.first(entry.depth) + QStringList{entry.name};
        const QString letter = entry.caption.section(u'&', 1).left(1).toUpper();
        if (!letter.isEmpty()) letters[parents.value(entry.depth - 1) + u' ' + letter].append(entry.name);
    }
    for (const QStringList& entries : letters)
        for (const QString& name : own)
            EXPECT_TRUE(!entries.contains(name) || entries.size() == 1) << name.toStdString();
}

TEST(MenuTree, ChoosesThePrintScreenByCompany) {
    const auto screen = [](const char* company, const char* mode, bool barcodes = false) {
        return reprintScreen(CompanyRules(QString::fromLatin1(company), {}), QString::fromLatin1(mode), barcodes);
    };
    EXPECT_EQ(screen("CE", "LIV", true), QStringLiteral("T_docbarre"));
    EXPECT_EQ(screen("CE", "CSG"), QStringLiteral("T_docedt"));
    EXPECT_EQ(screen("MD", "LIV"), QStringLiteral("T_docedt"));
    EXPECT_NE(screen("MD", "FAC"), screen("MD", "LIV"));
    EXPECT_NE(screen("CH", "FAC"), screen("LB", "FAC"));
}

} // namespace molven

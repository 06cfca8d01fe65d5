// What the screens of the reference data and of the menu do that a scenario cannot see.

#include "support/desks.h"
#include "support/dossier.h"

#include "play/stand_ins.h"
#include "reference/party_tables.h"
#include "screens/reference/document_shelf.h"
#include "screens/screens.h"
#include "shell/tables.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/style.h"

#include <QAction>
#include <QFrame>
#include <QPushButton>

namespace molven {

namespace {

class Screens : public testing::Test {
protected:
    Screens() {
        desk = test::deskOn(dossier);
        said = test::userOf(*desk);
    }

    const test::Dossier dossier;
    play::ScriptedPrompt* said = nullptr;
    std::unique_ptr<Desk> desk;
};

} // namespace

TEST_F(Screens, KeepADocumentFolderChosenWhileARecordIsLookedAt) {
    Form* clients = desk->open(QStringLiteral("t_cltges"));
    ASSERT_NE(clients, nullptr);
    auto* shelf = static_cast<DocumentShelf*>(clients->findChild<QFrame*>(QStringLiteral("Framedoc")));
    ASSERT_NE(shelf, nullptr);
    EXPECT_EQ(test::refusalOf([&] { shelf->take(dossier.folder()); }), QStringLiteral(" N° Client obligatoire"));
    EXPECT_TRUE(said->unchecked.isEmpty()) << "nothing is announced that is not kept";

    auto* code = static_cast<Edit*>(clients->findChild<QLineEdit*>(QStringLiteral("txtclt_cod")));
    code->setText(QStringLiteral("1"));
    ASSERT_TRUE(code->left());
    shelf->take(dossier.folder());
    EXPECT_EQ(said->unchecked.dequeue(), QStringLiteral("Enregistrés sous :  ") + dossier.folder());
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    EXPECT_EQ(molven.find(strclient, strclient.clt_cod == QStringLiteral("000001"))->value(strclient.clt_chemin),
              dossier.folder());
}

TEST_F(Screens, OfRecordsSayWhatAnotherWorkstationChangedAndKeepWhatIsTyped) {
    Form* clients = desk->open(QStringLiteral("t_cltges"));
    const auto box = [&](const char* name) {
        return static_cast<Edit*>(clients->findChild<QLineEdit*>(QString::fromLatin1(name)));
    };
    const auto press = [&](const char* name) { clients->findChild<QPushButton*>(QString::fromLatin1(name))->click(); };
    box("txtclt_cod")->setText(QStringLiteral("1"));
    ASSERT_TRUE(box("txtclt_cod")->left());
    press("CmdModifier");
    box("txtclt_l1")->setText(QStringLiteral("3 RUE NEUVE"));
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    const Criterion first = strclient.clt_cod == QStringLiteral("000001");
    molven.update(strclient, {{strclient.clt_nom, QStringLiteral("HOPITAL D'AILLEURS")}}, first);
    said->answers.enqueue(true);
    press("cmdvalide");
    const QString told = said->unchecked.dequeue();
    EXPECT_TRUE(told.contains(QStringLiteral("CLINIQUE DE L'ÉTOILE -> HOPITAL D'AILLEURS"))) << told.toStdString();
    EXPECT_EQ(box("txtclt_nom")->text() + u'/' + box("txtclt_l1")->text(),
              QStringLiteral("HOPITAL D'AILLEURS/3 RUE NEUVE"));
    press("cmdvalide");
    const auto stored = molven.find(strclient, first);
    EXPECT_EQ(stored->value(strclient.clt_nom) + u'/' + stored->value(strclient.clt_l1),
              QStringLiteral("HOPITAL D'AILLEURS/3 RUE NEUVE"));
}

TEST_F(Screens, KeepAMarkOnARefusedBoxUntilItIsMended) {
    Form* clients = desk->open(QStringLiteral("t_cltges"));
    const auto press = [clients](const char* name) {
        clients->findChild<QPushButton*>(QString::fromLatin1(name))->click();
    };
    const auto* remove = clients->findChild<QPushButton*>(QStringLiteral("CmdSupprime"));
    press("CmdAjout");
    EXPECT_TRUE(remove->toolTip().contains(QStringLiteral("en cours de saisie"))) << "why it cannot act now";
    auto* name = clients->findChild<QLineEdit*>(QStringLiteral("txtclt_nom"));
    EXPECT_TRUE(style::isRequired(*name));
    const QString tip = name->toolTip();
    press("cmdvalide");
    EXPECT_EQ(said->unchecked.dequeue(), QStringLiteral(" Nom obligatoire"));
    EXPECT_TRUE(style::isRefused(*name));
    EXPECT_EQ(name->toolTip(), QStringLiteral("Nom obligatoire"));
    name->setText(QStringLiteral("CLINIQUE"));
    EXPECT_FALSE(style::isRefused(*name));
    EXPECT_EQ(name->toolTip(), tip);
    name->clear();
    press("cmdvalide");
    EXPECT_TRUE(style::isRefused(*name));
    said->answers.enqueue(true);
    press("cmdannule");
    EXPECT_FALSE(style::isRefused(*name)) << "the record it was refused for is given up";
    EXPECT_TRUE(remove->toolTip().isEmpty());
    said->unchecked.clear();
}

TEST_F(Screens, OfTheMenuTellTheEntriesThatWouldDoNothing) {
    Form* menu = desk->open(QStringLiteral("Tmenu"));
    ASSERT_NE(menu, nullptr);
    const auto entry = [menu](const char* name) { return menu->findChild<QAction*>(QString::fromLatin1(name)); };
    EXPECT_FALSE(style::isIdle(*entry("mnu1_fic_art_ges")));
    EXPECT_FALSE(style::isIdle(*entry("mnu_sta_51")));
    EXPECT_TRUE(style::isIdle(*entry("mnu1_fic_par_pan1")));
    EXPECT_EQ(entry("mnu1_fic_par_pan1")->toolTip(), QStringLiteral("Sans objet pour votre société"));
    EXPECT_TRUE(entry("mnu1_fic_par_pan1")->isEnabled()) << "it still answers";
}

TEST_F(Screens, OfReprintsKnowTheDocumentModeAndTheReprintWord) {
    QStringList words;
    for (const char* screen : {"T_docedt", "T_docedt2", "T_docedt3", "T_docedt4", "T_btredt"})
        desk->addScreen(QString::fromLatin1(screen), [&words, screen](Desk& owner) {
            words.append(owner.session.mode_ecran);
            return new Form(owner, QString::fromLatin1(screen));
        });
    Form* menu = desk->open(QStringLiteral("Tmenu"));
    ASSERT_NE(menu, nullptr);
    for (const char* entry :
         {"mnu_vte_pro_edt", "mnu_vte_btr_edt", "mnu_vte_liv_edt", "mnu_vte_fac_edt", "mnu_vte_csg_edt"}) {
        said->answers.enqueue(false);
        menu->findChild<QAction*>(QString::fromLatin1(entry))->trigger();
        said->answers.clear();
    }
    EXPECT_EQ(words, QStringList({QStringLiteral("RED"), QStringLiteral("BTR RED"), QStringLiteral("LIV RED"),
                                  QStringLiteral("FAC RED"), QStringLiteral("CSG RED")}));
    said->unchecked.clear();
}

TEST_F(Screens, OfTheEntranceLetACompanyWithoutCodeIn) {
    {
        Workspace workspace;
        workspace.open(dossier.session.molven()).update(strspecif, {{strspecif.spe_cod, QString()}}, {});
    }
    Form* entrance = desk->open(QStringLiteral("Tcsecret"));
    auto* word = entrance->findChild<QLineEdit*>(QStringLiteral("Text1"));
    for (int turn = 0; turn < 2; ++turn) { // the first word typed is kept, then asked for
        word->setText(QStringLiteral("mot"));
        entrance->findChild<QAbstractButton*>(QStringLiteral("Btok"))->click();
    }
    EXPECT_NE(desk->window(QStringLiteral("Tmenu")), nullptr);
}

} // namespace molven

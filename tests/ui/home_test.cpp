// The home page, its search, and screens that open in tabs.

#include "data/clock.h"
#include "play/stand_ins.h"
#include "reference/party_tables.h"
#include "screens/screens.h"
#include "support/desks.h"
#include "support/sales.h"
#include "ui/form.h"
#include "ui/screen_tabs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

namespace molven {

namespace {

class Home : public test::Sales {
protected:
    Home() {
        desk = test::deskOn(dossier);
        said = test::userOf(*desk);
        menu = desk->open(QStringLiteral("Tmenu"));
        EXPECT_TRUE(QTest::qWaitForWindowActive(menu));
        box()->setFocus();
        rest();
    }
    void rest() {
        QCoreApplication::processEvents();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !menu->property("working").toBool(); }));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QLineEdit* box() { return menu->findChild<QLineEdit*>(QStringLiteral("txtrecherche")); }
    QAbstractButton* button(const char* name) { return menu->findChild<QAbstractButton*>(QString::fromLatin1(name)); }
    ScreenTabs* tabs() { return static_cast<ScreenTabs*>(menu->findChild<QTabWidget*>(QStringLiteral("Onglets"))); }
    static QString textOf(const Form* form, const char* name) {
        return form->findChild<QLineEdit*>(QString::fromLatin1(name))->text();
    }

    play::ScriptedPrompt* said = nullptr;
    std::unique_ptr<Desk> desk;
    Form* menu = nullptr;
};

} // namespace

TEST_F(Home, ShowsWhatWasWrittenSinceItWasRead) {
    EXPECT_EQ(button("jour_bl"), nullptr);
    dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    button("cmdactualiser")->click();
    rest();
    ASSERT_NE(button("jour_bl"), nullptr);
    EXPECT_TRUE(button("jour_bl")->text().startsWith(QStringLiteral("1 bon de livraison à facturer : 90,00")));
}

TEST_F(Home, OpensWhatIsFoundAndSaysWhenItIsGone) {
    QTest::keyClicks(box(), QStringLiteral("sud"));
    QTest::keyClick(box(), Qt::Key_Return);
    Form* clients = desk->window(QStringLiteral("t_cltges"));
    ASSERT_NE(clients, nullptr);
    EXPECT_EQ(textOf(clients, "txtclt_cod"), QStringLiteral("000002"));

    // The screen is open on another record, of which something is typed that its user keeps.
    clients->findChild<QAbstractButton*>(QStringLiteral("CmdModifier"))->click();
    clients->findChild<QLineEdit*>(QStringLiteral("txtclt_nom"))->setText(QStringLiteral("AUTRE NOM"));
    said->answers.enqueue(false);
    QTest::keyClicks(box(), QStringLiteral("etoile"));
    QTest::keyClick(box(), Qt::Key_Return);
    EXPECT_EQ(textOf(clients, "txtclt_nom"), QStringLiteral("AUTRE NOM"));
    EXPECT_EQ(said->unchecked.takeFirst().section(u'\n', 0, 0).contains(QStringLiteral("Abandonner")), true);

    // Another workstation deletes what was found before it is opened.
    said->answers.enqueue(true);
    QTest::keyClicks(box(), QStringLiteral("etoile"));
    Workspace workspace;
    workspace.open(dossier.session.molven()).remove(strclient, strclient.clt_cod == QStringLiteral("000001"));
    QTest::keyClick(box(), Qt::Key_Return);
    ASSERT_FALSE(said->unchecked.isEmpty());
    EXPECT_EQ(said->unchecked.first(), QStringLiteral("Ce code n'existe pas"));
}

TEST_F(Home, TakesWhateverIsTypedForWords) {
    const auto* list = [this] {
        QTest::keyClicks(box(), QStringLiteral("x"));
        return menu->findChild<QListWidget*>(QStringLiteral("LstTrouve"));
    }();
    ASSERT_NE(list, nullptr);
    const std::pair<const char*, bool> typed[]{{"l'", true},
                                               {"%", false},
                                               {"_", false},
                                               {"*", false},
                                               {"' or '1'='1", false},
                                               {"\"; drop table strclient; --", false},
                                               {"[0-9]", false},
                                               {"\\", false},
                                               {"3760000000017", true},
                                               {"(01)03760000000017(10)L1(21)", false},
                                               {"]d201037600000000171", false},
                                               {"99999999999999999999999999999999", false},
                                               {"ÉTOILE", true},
                                               {"000002", true}};
    for (const auto& [text, found] : typed) {
        SCOPED_TRACE(text);
        box()->clear();
        QTest::keyClicks(box(), QString::fromUtf8(text));
        EXPECT_EQ(list->item(0)->text() != QStringLiteral("Aucune réponse"), found);
    }
    box()->clear();
    QTest::keyClicks(box(), QStringLiteral("%"));
    QTest::keyClick(box(), Qt::Key_Return);
    EXPECT_TRUE(said->unchecked.isEmpty() && desk->windows().size() == 1) << "Return on no answer opens nothing";
}

TEST_F(Home, TellsNoDateOfDocumentsThatHaveNone) {
    const QString note = dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    Workspace workspace;
    Database vente = workspace.open(dossier.session.vente());
    vente.update(strlive, {{strlive.fac_datf, QString()}, {strlive.tri_datf, QString()}}, strlive.fac_no == note);
    button("cmdactualiser")->click();
    rest();
    ASSERT_NE(button("jour_bl"), nullptr);
    EXPECT_EQ(button("jour_bl")->text(), QStringLiteral("1 bon de livraison à facturer : 90,00 EUR HT"));

    // Deleted by another workstation before the line is opened: the list behind it is empty, and says so.
    vente.remove(strlive, strlive.fac_no == note);
    button("jour_bl")->click();
    Form* notes = desk->window(QStringLiteral("T_gestion"));
    ASSERT_NE(notes, nullptr);
    EXPECT_TRUE(said->unchecked.isEmpty());
    rest();
}

/// Alt and a letter that both the screen and the menu have mean the screen.
TEST_F(Home, LeavesAccessKeysToTheScreenInItsTab) {
    menu->findChild<QAbstractButton*>(QStringLiteral("chkonglets"))->setChecked(true);
    const auto captionOf = [&](const char* entry) {
        return menu->findChild<QAction*>(QString::fromLatin1(entry))->text();
    };
    Form* suppliers = desk->open(QStringLiteral("T_fouges"));
    rest();
    EXPECT_EQ(captionOf("mnu_vte"), QStringLiteral("Ventes"));
    const auto* validate = suppliers->findChild<QAbstractButton*>(QStringLiteral("cmdvalide"));
    EXPECT_FALSE(validate->isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::AltModifier); // "Ajouter", and "Aide"
    EXPECT_TRUE(QTest::qWaitFor([&] { return validate->isEnabled(); }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(captionOf("mnu_vte"), QStringLiteral("&Ventes"));

    desk->bringForward(*suppliers);
    auto* name = suppliers->findChild<QLineEdit*>(QStringLiteral("txtfou_nom"));
    name->setFocus();
    QTest::keyClick(name, Qt::Key_F1);
    rest();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    rest();
    EXPECT_EQ(QApplication::focusWidget(), name) << "the guide read and closed, one goes on where one was";
}

TEST_F(Home, AsksBeforeATabWithTypedWorkIsClosed) {
    menu->findChild<QAbstractButton*>(QStringLiteral("chkonglets"))->setChecked(true);
    QList<QPointer<Form>> typed;
    for (const char* name : {"t_cltges", "T_fouges", "T_artges"}) {
        Form* form = desk->open(QString::fromLatin1(name));
        ASSERT_NE(form, nullptr);
        form->findChild<QAbstractButton*>(QStringLiteral("CmdAjout"))->click();
        typed.append(form);
    }
    for (const auto& [form, box] :
         {std::pair(typed[0], "txtclt_nom"), std::pair(typed[1], "txtfou_nom"), std::pair(typed[2], "txtli1")})
        form->findChild<QLineEdit*>(QString::fromLatin1(box))->setText(QStringLiteral("A MOITIE"));
    const std::pair<std::function<void()>, QList<bool>> ways[]{
        {[&] { tabs()->tabCloseRequested(1); }, {false}},
        {[&] { QTest::mouseClick(tabs()->tabBar(), Qt::MiddleButton, {}, tabs()->tabBar()->tabRect(1).center()); },
         {false}},
        {[&] { QTest::keyClick(typed[0], Qt::Key_Escape); }, {false}},
        {[&] { menu->close(); }, {true, true, false}}};
    for (const auto& [way, answers] : ways) {
        desk->bringForward(*typed[0]);
        said->answers.append(answers);
        way();
        rest();
        EXPECT_EQ(said->unchecked.size(), answers.size());
        said->unchecked.clear();
        ASSERT_TRUE(typed[0] && typed[0]->isVisible());
        EXPECT_EQ(textOf(typed[0], "txtclt_nom"), QStringLiteral("A MOITIE"));
    }
    EXPECT_TRUE(!typed[1] && !typed[2] && menu->isVisible()) << "asked one by one, the last opened first";
    said->answers.append(true);
    QTest::mouseClick(tabs()->tabBar(), Qt::MiddleButton, {}, tabs()->tabBar()->tabRect(1).center());
    rest();
    EXPECT_FALSE(typed[0]);
    QTest::mouseClick(tabs()->tabBar(), Qt::MiddleButton, {}, tabs()->tabBar()->tabRect(0).center());
    EXPECT_EQ(tabs()->count(), 1) << "the home stays";
    said->unchecked.clear();
}

TEST_F(Home, KeepsTheButtonsOfAScreenInSightInItsTab) {
    menu->findChild<QAbstractButton*>(QStringLiteral("chkonglets"))->setChecked(true);
    menu->resize(1272, 680); // what a small screen leaves
    for (const char* name : {"AN_base", "T_gestion", "T_proges", "t_cltges"}) {
        SCOPED_TRACE(name);
        const bool isDocument = QString::fromLatin1(name) == u"T_gestion";
        Form* form = desk->open(QString::fromLatin1(name), isDocument ? QStringLiteral("LIV") : QString());
        ASSERT_NE(form, nullptr);
        rest();
        const auto* room = static_cast<QScrollArea*>(tabs()->currentWidget());
        EXPECT_EQ(room->verticalScrollBar()->maximum(), 0);
        EXPECT_EQ(room->horizontalScrollBar()->maximum(), 0);
    }
}

TEST_F(Home, TakesScreensIntoTabsForWhoWantsThem) {
    menu->findChild<QAbstractButton*>(QStringLiteral("chkonglets"))->setChecked(true);
    Form* clients = desk->open(QStringLiteral("t_cltges"));
    Form* suppliers = desk->open(QStringLiteral("T_fouges"));
    rest();
    EXPECT_EQ(clients->window(), menu);
    EXPECT_EQ(tabs()->count(), 3);
    EXPECT_TRUE(suppliers->isVisible() && !clients->isVisible());
    EXPECT_EQ(desk->open(QStringLiteral("t_cltges")), clients) << "it is open, though out of sight";
    EXPECT_TRUE(clients->isVisible());
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("txtclt_cod"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    rest();
    EXPECT_EQ(desk->window(QStringLiteral("t_cltges")), nullptr);
    EXPECT_EQ(tabs()->count(), 2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), box());
    menu->findChild<QAbstractButton*>(QStringLiteral("chkonglets"))->setChecked(false);
    EXPECT_TRUE(desk->open(QStringLiteral("T_artges"))->isWindow());
    EXPECT_TRUE(desk->quit()) << "closes what stands in tabs, too";
    EXPECT_FALSE(Desk::isOpen(*suppliers));
}

} // namespace molven

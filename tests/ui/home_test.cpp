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

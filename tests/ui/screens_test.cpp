// What holds for every screen: found by walking the menu.

#include "play/stand_ins.h"
#include "screens/screens.h"
#include "shell/menu_tree.h"
#include "support/desks.h"
#include "support/dossier.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/menu_bar.h"
#include "ui/style.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace molven {

namespace {

struct Screen {
    QString name, mode;
};

QList<Screen> screens() {
    QList<Screen> all;
    for (const MenuEntry& entry : menuTree())
        if (entry.action == MenuAction::Screen || entry.action == MenuAction::InvoiceChoice)
            all.append({entry.target, entry.mode});
    for (const char* name : {"T_partxt", "T_monnaie", "T_emetteur", "T_tipslpp", "T_rappel", "T_etibarre", "T_lecliv",
                             "Tcodspe1", "Tcodspe2", "Tcmodcs2", "Tcsecret"})
        all.append({QString::fromLatin1(name), {}});
    return all;
}

QString accessKey(const QString& caption) { return QKeySequence::mnemonic(caption).toString(); }

/// Access keys that two usable controls share, with their captions.
QStringList clashes(const QWidget& window) {
    QMap<QString, QStringList> captions;
    for (const auto* button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->isEnabled()) captions[accessKey(button->text())].append(button->text());
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->isVisible() && label->buddy() && label->buddy()->isEnabled())
            captions[accessKey(label->text())].append(label->text());
    captions.remove(QString());
    QStringList found;
    for (auto key = captions.begin(); key != captions.end(); ++key)
        if (key->size() > 1) found.append(key.key() + QStringLiteral(" : ") + key->join(QStringLiteral(", ")));
    return found;
}

/// A program on a new dossier, whose screens are opened one by one.
class EveryScreen : public testing::Test {
protected:
    EveryScreen() : dossier(QStringLiteral("CE")) {
        desk = test::deskOn(dossier);
        said = test::userOf(*desk);
    }
    template <class Check>
    void walk(const Check& check) {
        for (const Screen& screen : screens()) {
            Form* form = desk->open(screen.name, screen.mode);
            if (!form) continue;
            SCOPED_TRACE((screen.name + u' ' + screen.mode).toStdString());
            check(*form);
            if (auto* add = form->findChild<QAbstractButton*>(QStringLiteral("CmdAjout")); add && add->isEnabled()) {
                add->click();
                check(*form);
            }
            delete form;
        }
    }

    test::Dossier dossier;
    play::ScriptedPrompt* said = nullptr;
    std::unique_ptr<Desk> desk;
};

} // namespace

TEST_F(EveryScreen, HasAnAccessKeyForOneControlOnly) {
    walk([](const Form& form) { EXPECT_EQ(clashes(form).join(u'\n'), QString()); });
}

TEST_F(EveryScreen, HasNoClashWithWhatOpensBelowTheLinesOfADocument) {
    dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    dossier.document(QStringLiteral("FAC"), dossier.receive(QStringLiteral("HIP"), 1));
    int opened = 0;
    for (const char* mode : {"LIV", "FAC"}) {
        Form* form = desk->open(QStringLiteral("T_gestion"), QString::fromLatin1(mode));
        ASSERT_NE(form, nullptr);
        form->findChild<QPushButton*>(QStringLiteral("cmdLast"))->click();
        for (const char* part : {"Cmdajoutlig", "cmdmodiflig", "Cmdlecture", "Cmdvisupied"}) {
            SCOPED_TRACE(std::string(mode) + ' ' + part);
            form->findChild<QPushButton*>(QString::fromLatin1(part))->click();
            EXPECT_EQ(clashes(*form).join(u'\n'), QString());
            for (const char* leave : {"Cmdquitlig", "Cmdquitlect", "Cmdquitpied"})
                if (auto* button = form->findChild<QPushButton*>(QString::fromLatin1(leave)); button->isVisible()) {
                    button->click();
                    ++opened;
                }
        }
        delete form;
    }
    EXPECT_EQ(opened, 8);
}

TEST_F(EveryScreen, HasAKeyForEveryButton) {
    walk([](const Form& form) {
        for (const auto* button : form.findChildren<QPushButton*>())
            EXPECT_TRUE(!button->isVisible() || button->objectName() == u"Cmdhisto" || // Ctrl+H
                        !accessKey(button->text()).isEmpty())
                << button->objectName().toStdString() << " : " << button->text().toStdString();
    });
}

TEST_F(EveryScreen, HasAKeyForEveryBoxWhoseCaptionHasAFreeLetter) {
    walk([](const Form& form) {
        QString taken;
        for (const auto* button : form.findChildren<QAbstractButton*>()) taken += accessKey(button->text()).right(1);
        for (const auto* label : form.findChildren<QLabel*>())
            if (label->buddy()) taken += accessKey(label->text()).right(1);
        for (const auto* label : form.findChildren<QLabel*>()) {
            if (!label->buddy() || !label->isVisible() || !accessKey(label->text()).isEmpty()) continue;
            for (const QChar letter : label->text().toUpper())
                EXPECT_TRUE(letter < u'A' || letter > u'Z' || taken.contains(letter))
                    << form.objectName().toStdString() << " : " << label->text().toStdString();
        }
    });
}

TEST_F(EveryScreen, HasANameForEveryControl) {
    walk([](const Form& form) {
        for (QWidget* control : form.findChildren<QWidget*>()) {
            const bool acts = qobject_cast<QLineEdit*>(control) || qobject_cast<QComboBox*>(control) ||
                              qobject_cast<QAbstractButton*>(control) || qobject_cast<QAbstractItemView*>(control);
            if (!acts || !control->isVisible() || qobject_cast<QHeaderView*>(control)) continue;
            const QString name = QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name);
            EXPECT_TRUE(name.contains(QRegularExpression(QStringLiteral("\\p{L}"))))
                << control->objectName().toStdString() << " : " << name.toStdString();
        }
    });
}

TEST_F(EveryScreen, MarksTheButtonThatReturnPressesOnceAtMost) {
    walk([](const Form& form) {
        int marked = 0;
        for (const auto* button : form.findChildren<QPushButton*>())
            if (button->isVisible() && button->isDefault()) ++marked;
        EXPECT_LE(marked, 1);
    });
}

TEST_F(EveryScreen, FitsASmallScreenWithItsFrame) {
    walk([](const Form& form) {
        EXPECT_LE(form.minimumSizeHint().width(), 1280 - 8);
        EXPECT_LE(form.minimumSizeHint().height(), 720 - 40);
        const QRect whole = form.frameGeometry();
        EXPECT_TRUE(QApplication::primaryScreen()->availableGeometry().contains(whole))
            << whole.x() << ',' << whole.y() << ' ' << whole.width() << 'x' << whole.height();
    });
}

TEST_F(EveryScreen, ShowsARecordWholeOnASmallScreen) {
    int seen = 0;
    walk([&seen](Form& form) {
        for (const auto* area : form.findChildren<QScrollArea*>()) {
            form.resize(1280 - 8, 720 - 40);
            QApplication::processEvents();
            EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);
            EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
            ++seen;
        }
    });
    EXPECT_GE(seen, 3);
}

TEST_F(EveryScreen, AnswersTheStandardKeys) {
    const std::pair<Qt::Key, QStringList> keys[] = {
        {Qt::Key_N, {QStringLiteral("CmdAjout")}},
        {Qt::Key_P, {QStringLiteral("Cmdimp"), QStringLiteral("Cmdvisu"), QStringLiteral("cmdedt")}},
        {Qt::Key_S, {QStringLiteral("cmdvalide"), QStringLiteral("Cmdvalstk")}},
        {Qt::Key_H, {QStringLiteral("Cmdhisto")}}};
    int answered = 0;
    walk([&](Form& form) {
        for (const auto& [key, names] : keys)
            for (const QString& name : names) {
                auto* meant = form.findChild<QAbstractButton*>(name);
                if (!meant || !meant->isVisible() || !meant->isEnabled()) continue;
                SCOPED_TRACE(name.toStdString());
                const QSignalSpy clicks(meant, &QAbstractButton::clicked);
                said->answers.clear();
                said->answers.append({true, true});
                QTest::keyClick(form.focusWidget() ? form.focusWidget() : &form, key, Qt::ControlModifier);
                EXPECT_EQ(clicks.count(), 1);
                ++answered;
                if (!form.isVisible()) return;
                break; // where one prints and looks, the key prints
            }
    });
    EXPECT_GT(answered, 60);
    said->unchecked.clear();
    said->unanswered.clear();
}

TEST_F(EveryScreen, ComesToTheFrontWhenItAsksWhetherTypedWorkIsLost) {
    desk->open(QStringLiteral("Tmenu"));
    Form* clients = desk->open(QStringLiteral("t_cltges"));
    Form* suppliers = desk->open(QStringLiteral("T_fouges"));
    ASSERT_NE(clients, nullptr);
    ASSERT_NE(suppliers, nullptr);
    clients->findChild<QPushButton*>(QStringLiteral("CmdAjout"))->click();
    clients->findChild<QLineEdit*>(QStringLiteral("txtclt_nom"))->setText(QStringLiteral("A moitié"));
    suppliers->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(suppliers));
    said->answers.append(false);
    EXPECT_FALSE(desk->quit());
    EXPECT_TRUE(QTest::qWaitForWindowActive(clients)) << "the question is about this window";
    said->unchecked.clear();
}

TEST_F(EveryScreen, ShowsItsChartsInItsOwnColours) {
    const auto before = style::scheme();
    Form* statistics = nullptr;
    for (const auto scheme : {style::Scheme::Dark, style::Scheme::Light}) { // opened in one, turned to the other
        style::apply(scheme);
        if (!statistics) statistics = desk->open(QStringLiteral("T_staedt"));
        ASSERT_NE(statistics, nullptr);
        QApplication::processEvents();
        int charts = 0;
        for (QGraphicsView* chart : statistics->findChildren<QGraphicsView*>()) {
            const QColor ground = chart->grab().toImage().pixelColor(chart->rect().center());
            EXPECT_EQ(ground, style::palette(scheme).color(QPalette::Base)) << chart->objectName().toStdString();
            ++charts;
        }
        EXPECT_EQ(charts, 2);
    }
    style::apply(before);
}

TEST_F(EveryScreen, FiltersItsListByCtrlF) {
    Form* vat = desk->open(QStringLiteral("T_parfac"));
    ASSERT_NE(vat, nullptr);
    auto* box = vat->findChild<QLineEdit*>(QStringLiteral("txtpar1_lib"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_F, Qt::ControlModifier);
    auto* grid = dynamic_cast<Grid*>(vat->focusWidget());
    ASSERT_NE(grid, nullptr);
    const int all = grid->rows().rowCount();
    QTest::keyClicks(grid, QStringLiteral("norm"));
    EXPECT_LT(grid->rows().rowCount(), all);
}

namespace {

QRgb background(MenuBar& bar, const QAction* entry) {
    const QRect caption = bar.actionGeometry(const_cast<QAction*>(entry));
    return bar.grab().toImage().pixel(caption.left() + 3, caption.center().y());
}

} // namespace

TEST(MenuBars, WalkThroughCaptionsThatShareAnAccessKeyAndOpenNothing) {
    QWidget window;
    MenuBar bar(&window);
    int opened = 0;
    QList<QAction*> entries;
    for (const char* caption : {"&Fichiers", "&Stocks", "&Ventes", "&Statistiques", "&Sauvegarde"}) {
        entries.append(bar.addAction(QString::fromLatin1(caption)));
        QObject::connect(entries.last(), &QAction::triggered, &window, [&opened] { ++opened; });
    }
    bar.resize(600, 30);
    window.resize(600, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const int expected : {1, 3, 4, 1}) {
        QTest::keyClick(&window, Qt::Key_S, Qt::AltModifier);
        EXPECT_EQ(bar.activeAction(), entries[expected]);
        EXPECT_NE(background(bar, entries[expected]), background(bar, entries[0])) << "Return opens what looks so";
    }
    EXPECT_EQ(opened, 0);
    QTest::keyClick(&bar, Qt::Key_Return);
    EXPECT_EQ(opened, 1);
}

} // namespace molven

// What a hand types: dates in short, codes in part.

#include "data/clock.h"
#include "play/stand_ins.h"
#include "reference/party_tables.h"
#include "screens/screens.h"
#include "support/desks.h"
#include "support/dossier.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCalendarWidget>
#include <QListWidget>
#include <QTest>

namespace molven {

namespace {

struct Typed {
    const char *keys, *shown;
};

class DatesTyped : public testing::TestWithParam<Typed> {
protected:
    DatesTyped() { Clock::set(QDate(2026, 11, 25)); }
    ~DatesTyped() override { Clock::set({}); }
};

/// A program on a dossier whose first clients are "CLINIQUE DU PARC" and the like.
class CodesTyped : public testing::Test {
protected:
    CodesTyped() : dossier(QStringLiteral("CE")) {
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        for (const auto& [code, name] :
             {std::pair("000071", "HOPITAL SAINT-ÉLOI"), std::pair("000072", "ZZ CLINIQUE")}) {
            Record client(strclient);
            client[strclient.clt_cod] = QString::fromUtf8(code);
            client[strclient.clt_nom] = QString::fromUtf8(name);
            molven.insert(client);
        }
        desk = test::deskOn(dossier);
        form = desk->open(QStringLiteral("T_fouges"));
        form->findChild<QAbstractButton*>(QStringLiteral("CmdAjout"))->click();
        box = static_cast<Edit*>(form->findChild<QLineEdit*>(QStringLiteral("txtfou_clt")));
        box->setFocus();
    }
    QStringList offered() const {
        QStringList lines;
        const auto* list = form->findChild<QListWidget*>(QStringLiteral("LstChoix"));
        if (list && list->isVisible())
            for (int i = 0; i < list->count(); ++i) lines.append(list->item(i)->data(Qt::UserRole).toString());
        return lines;
    }
    bool offers(const QString& code) {
        return QTest::qWaitFor([&] { return offered().contains(code); }, 5000);
    }

    const test::Dossier dossier;
    std::unique_ptr<Desk> desk;
    Form* form = nullptr;
    Edit* box = nullptr;
};

} // namespace

TEST_P(DatesTyped, AreCompletedOnLeaving) {
    DateBox box;
    QTest::keyClicks(&box, QString::fromLatin1(GetParam().keys));
    ASSERT_TRUE(box.leave());
    EXPECT_EQ(box.displayText(), QString::fromLatin1(GetParam().shown));
}

INSTANTIATE_TEST_SUITE_P(, DatesTyped,
                         testing::Values(Typed{"1205", "12/05/2026"}, Typed{"12,5", "12/05/2026"},
                                         Typed{"5.3.27", "05/03/2027"}, Typed{"12/05/2025", "12/05/2025"},
                                         Typed{"t", "25/11/2026"}, Typed{"+15", "10/12/2026"},
                                         Typed{"-25", "31/10/2026"}, Typed{"+1t", "25/11/2026"},
                                         Typed{"3102", "31/02/____"}, Typed{"", "__/__/____"}));

TEST(MonthBoxes, CompleteAYearOfTwoDigits) {
    DateBox box(nullptr, DateBox::Precision::Month);
    QTest::keyClicks(&box, QStringLiteral("0529"));
    ASSERT_TRUE(box.leave());
    EXPECT_EQ(box.displayText(), QStringLiteral("05/2029"));
}

TEST(DateBoxes, OpenACalendarOnTheDayTheyShow) {
    DateBox box;
    box.put(QStringLiteral("05/03/2026"));
    box.show();
    QTest::keyClick(&box, Qt::Key_F4);
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    auto* calendar = popup->findChild<QCalendarWidget*>();
    ASSERT_NE(calendar, nullptr);
    EXPECT_EQ(calendar->selectedDate(), QDate(2026, 3, 5));
    Q_EMIT calendar->activated(QDate(2026, 3, 6));
    EXPECT_EQ(box.text(), QStringLiteral("06/03/2026"));
    EXPECT_TRUE(box.isUnsettled()) << "chosen is as good as typed: it is checked on leaving";
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(CodesTyped, AreOfferedByCodeAndByAPartOfTheNameWhateverItsAccents) {
    ASSERT_FALSE(box->isReadOnly());
    QTest::keyClicks(box, QStringLiteral("71"));
    EXPECT_TRUE(offers(QStringLiteral("000071")));
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("eloi"));
    EXPECT_TRUE(offers(QStringLiteral("000071")));
    EXPECT_EQ(offered().size(), 1);
    QTest::keyClick(box, Qt::Key_Down);
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(box->text(), QStringLiteral("000071"));
    EXPECT_TRUE(offered().isEmpty());
}

TEST_F(CodesTyped, StayAsTypedUntilALineIsChosen) {
    QTest::keyClicks(box, QStringLiteral("00007"));
    ASSERT_TRUE(offers(QStringLiteral("000072")));
    QTest::keyClick(box, Qt::Key_Tab);
    EXPECT_TRUE(offered().isEmpty());
    EXPECT_FALSE(box->hasFocus());
    EXPECT_EQ(box->text(), QStringLiteral("000007")) << "completed as without the list";
}

TEST_F(CodesTyped, StandChosenInTheirListWhenItOpens) {
    box->put(QStringLiteral("000072"));
    QTest::keyClick(box, Qt::Key_F2);
    auto* grid = dynamic_cast<Grid*>(form->focusWidget());
    ASSERT_NE(grid, nullptr);
    ASSERT_TRUE(grid->current());
    EXPECT_EQ(grid->current()->value(strclient.clt_cod), QStringLiteral("000072"));
}

} // namespace molven

// News that asks nothing: shown at the foot of the window the user is in, and kept for the session.

#include "play/stand_ins.h"
#include "support/dossier.h"
#include "ui/form.h"

#include <QCoreApplication>
#include <QLabel>

#include <gtest/gtest.h>

namespace molven {

namespace {

class NoticesOfASession : public testing::Test {
protected:
    NoticesOfASession() : dossier(QStringLiteral("CE")) {
        auto prompt = std::make_unique<play::ScriptedPrompt>();
        said = prompt.get();
        desk = std::make_unique<Desk>(dossier.folder(), std::move(prompt),
                                      std::make_unique<play::KeepingPrinter>(QString()));
        desk->session = dossier.session;
    }
    static QString line(const Form* form) { return form->findChild<QLabel*>(QStringLiteral("Notices"))->text(); }

    const test::Dossier dossier;
    play::ScriptedPrompt* said = nullptr;
    std::unique_ptr<Desk> desk;
};

} // namespace

TEST_F(NoticesOfASession, AreAllCountedWhenTwoComeInARow) {
    const Form* form = desk->open(QStringLiteral("Premier"));
    desk->notify(QStringLiteral("un"));
    desk->prompt().tell(QStringLiteral("refus"));
    desk->notify(QStringLiteral("deux"));
    QCoreApplication::processEvents();
    EXPECT_EQ(line(form), QStringLiteral("deux  (2 avis, F8 : liste)"));
    ASSERT_EQ(desk->notices().size(), 2);
    EXPECT_EQ(desk->notices().first().window, form->windowTitle());
    EXPECT_EQ(said->unchecked, (QList<QString>{QStringLiteral("un"), QStringLiteral("refus"), QStringLiteral("deux")}));
}

TEST_F(NoticesOfASession, OutliveTheWindowThatClosesAfterTellingThem) {
    const Form* stays = desk->open(QStringLiteral("Premier"));
    Form* closes = desk->open(QStringLiteral("Second"));
    desk->notify(QStringLiteral("Fin du traitement"));
    closes->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(line(stays), QStringLiteral("Fin du traitement"));
}

} // namespace molven

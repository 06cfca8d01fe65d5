#include "ui/upgrade_display.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <thread>

namespace molven {

namespace {

QList<QDialog*> dialogs() {
    QList<QDialog*> found;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QDialog*>(window)) found.append(dialog);
    return found;
}

/// Tries to leave the first dialog that is shown.
class Impatient : public QObject {
public:
    Impatient() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* about, QEvent* event) override {
        auto* dialog = qobject_cast<QDialog*>(about);
        if (!dialog || event->type() != QEvent::Show) return false;
        QMetaObject::invokeMethod(
            this, [this, dialog] { leave(*dialog); }, Qt::QueuedConnection);
        return false;
    }

    QString words;
    int done = 0;
    bool isModal = false, isLeft = true;
    std::atomic<bool> isOver = false;

private:
    void leave(QDialog& dialog) {
        words = dialog.findChild<QLabel*>()->text();
        done = dialog.findChild<QProgressBar*>()->value();
        isModal = dialog.isModal();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        dialog.close();
        isLeft = !dialog.isVisible();
        isOver = true;
    }
};

class UpgradeDisplays : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(InThreads, UpgradeDisplays, testing::Bool());

} // namespace

TEST_P(UpgradeDisplays, StandOverEverythingUntilTheFileIsUpToDate) {
    const bool isInAnotherThread = GetParam();
    Impatient user;
    const QDeadlineTimer given(60'000);
    const auto upgrade = [&] {
        const Progress progress = upgradeDisplay(QStringLiteral("/dossier/molven.mdb"));
        for (int done = 1; !user.isOver && !given.hasExpired(); ++done) EXPECT_TRUE(progress(done, INT_MAX));
    };
    if (isInAnotherThread) {
        std::thread worker(upgrade);
        while (!user.isOver && !given.hasExpired()) QCoreApplication::processEvents();
        worker.join();
        QCoreApplication::processEvents();
    } else {
        upgrade();
    }
    EXPECT_TRUE(user.words.startsWith(QStringLiteral("molven.mdb vient d'une version précédente")));
    EXPECT_GT(user.done, 0);
    EXPECT_TRUE(user.isModal);
    EXPECT_FALSE(user.isLeft);
    EXPECT_EQ(dialogs().size(), 0);
}

} // namespace molven

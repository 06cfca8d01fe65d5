#include "screens/shell/upgrade_display.h"

#include "data/layout.h"

#include <QApplication>
#include <QFileInfo>
#include <QProgressDialog>
#include <QThread>

namespace molven {

namespace {

constexpr int ShownAfterMs = 500;

/// Cannot be stopped: a file is brought up to date or not opened.
Progress displayOf(const QString& path) {
    if (QThread::currentThread() != qApp->thread()) return {};
    const auto dialog = std::make_shared<QProgressDialog>(
        QStringLiteral("Mise à jour de %1 pour cette version du programme").arg(QFileInfo(path).fileName()), QString(),
        0, 0, QApplication::activeWindow());
    dialog->setWindowTitle(QApplication::applicationName());
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->setMinimumDuration(ShownAfterMs);
    dialog->setCancelButton(nullptr);
    return [dialog](int done, int total) {
        dialog->setMaximum(total);
        dialog->setValue(done);
        return true;
    };
}

} // namespace

void showUpgradesInWindow() { Layout::showUpgrades(displayOf); }

} // namespace molven

#include "ui/progress.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>
#include <QPushButton>
#include <QScopeGuard>

namespace molven {

namespace {

constexpr int ShownAfterMs = 500, ToldEveryMs = 50;

std::shared_ptr<QProgressDialog> dialogOver(QWidget& over, const QString& what) {
    auto dialog = std::make_shared<QProgressDialog>(what, QString(), 0, 0, over.window());
    dialog->setWindowTitle(over.window()->windowTitle());
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->setMinimumDuration(ShownAfterMs);
    auto* stop = new QPushButton(QStringLiteral("&Annuler"));
    stop->setAutoDefault(false);
    stop->setFocusPolicy(Qt::NoFocus);
    dialog->setCancelButton(stop);
    return dialog;
}

} // namespace

Progress progress(QWidget& over, const QString& what) {
    const auto dialog = dialogOver(over, what);
    QElapsedTimer told;
    told.start();
    return [dialog, told](int done, int total) mutable {
        if (done > 0 && told.elapsed() < ToldEveryMs) return true;
        told.restart();
        dialog->setMaximum(total);
        dialog->setValue(done);
        return !dialog->wasCanceled();
    };
}

void patiently(QWidget& over, Workspace& workspace, const QString& what, const std::function<void()>& work) {
    QWidget& window = *over.window();
    const auto dialog = dialogOver(over, what);
    QElapsedTimer begun, told;
    begun.start();
    told.start();
    // The engine is in the middle of a statement: nothing behind the display may ask it for records.
    window.setUpdatesEnabled(false);
    const auto after = qScopeGuard([&window] { window.setUpdatesEnabled(true); });
    const Watch watch(workspace, [&] {
        if (begun.elapsed() < ShownAfterMs || told.elapsed() < ToldEveryMs) return true;
        told.restart();
        dialog->show();
        QApplication::processEvents();
        return !dialog->wasCanceled();
    });
    work();
}

} // namespace molven

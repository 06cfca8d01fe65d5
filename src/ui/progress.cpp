#include "ui/progress.h"

#include <QElapsedTimer>
#include <QProgressDialog>
#include <QPushButton>

namespace molven {

namespace {

constexpr int ShownAfterMs = 500, ToldEveryMs = 50;

} // namespace

std::function<bool(int done, int total)> progress(QWidget& over, const QString& what) {
    auto dialog = std::make_shared<QProgressDialog>(what, QString(), 0, 0, over.window());
    dialog->setWindowTitle(over.window()->windowTitle());
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->setMinimumDuration(ShownAfterMs);
    auto* stop = new QPushButton(QStringLiteral("&Annuler"));
    stop->setAutoDefault(false);
    stop->setFocusPolicy(Qt::NoFocus);
    dialog->setCancelButton(stop);
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

} // namespace molven

#include "ui/notices.h"

#include "data/clock.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

namespace molven {

namespace {

constexpr qsizetype MostKept = 2000; ///< a day or two of a busy user

} // namespace

void Notices::add(const QString& window, const QString& text) {
    if (all_.size() == MostKept) all_.removeFirst();
    all_.append({Clock::now(), window, text});
    waiting_.append(text);
    QTimer::singleShot(0, this, [this] { flush(); });
}

void Notices::flush() {
    if (waiting_.isEmpty()) return;
    if (QWidget* box = QApplication::activeModalWidget()) {
        connect(box, &QObject::destroyed, this, [this] { QTimer::singleShot(0, this, [this] { flush(); }); });
        return;
    }
    if (show && show(waiting_)) waiting_.clear();
}

} // namespace molven

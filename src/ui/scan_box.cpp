#include "ui/scan_box.h"

#include "data/errors.h"
#include "ui/form.h"

#include <QApplication>
#include <QKeyEvent>

namespace molven {

ScanBox::ScanBox(Form& form, const QString& name, const std::function<bool(const QString&)>& take, QWidget* parent)
    : Edit(parent), form_(form), take_(take) {
    setObjectName(name);
    takesScans = true;
    left = [this] { return takeScan(); };
}

bool ScanBox::event(QEvent* event) {
    if (event->type() != QEvent::KeyPress || text().trimmed().isEmpty()) return Edit::event(event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Tab) return Edit::event(event);
    leave();
    event->accept();
    return true;
}

bool ScanBox::takeScan() {
    const QString scanned = text().trimmed();
    if (scanned.isEmpty()) return true;
    bool taken = false;
    form_.clearNotices();
    form_.guarded([&] {
        try {
            taken = take_(scanned);
        } catch (const Refusal& refusal) {
            QApplication::beep();
            form_.notify(refusal.text);
        }
    });
    if (taken)
        put({});
    else
        selectAll(); // the next scan takes its place
    return taken;
}

} // namespace molven

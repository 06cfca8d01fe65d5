#include "ui/habits.h"

#include <QSysInfo>

namespace molven {

void Habits::keepIn(std::unique_ptr<QSettings> store) {
    store_ = std::move(store);
    if (store_)
        store_->beginGroup(QSysInfo::machineHostName()); // a user's configuration may follow him to other workstations
}

QVariant Habits::value(const QString& key) const { return store_ ? store_->value(key) : QVariant(); }

void Habits::set(const QString& key, const QVariant& value) {
    if (store_) store_->setValue(key, value);
}

void Habits::forget(const QString& key) {
    if (store_) store_->remove(key);
}

} // namespace molven

#pragma once

#include <QSettings>
#include <QVariant>

#include <memory>

namespace molven {

/// What a user keeps of the windows on this workstation: where they were left, the columns of the lists. It lies in the
/// user's own configuration, never in the dossier.
class Habits {
public:
    /// Null keeps nothing.
    void keepIn(std::unique_ptr<QSettings> store);
    QVariant value(const QString& key) const;
    void set(const QString& key, const QVariant& value);
    void forget(const QString& key);

private:
    std::unique_ptr<QSettings> store_;
};

} // namespace molven

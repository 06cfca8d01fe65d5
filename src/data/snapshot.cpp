#include "data/snapshot.h"

#include "data/sqlite/connection.h"
#include "data/sqlite/held_file.h"

#include <QDir>
#include <QFile>

#include <memory>
#include <vector>

namespace molven {

namespace {

/// Two that hold each other up are told apart by giving up and asking again.
constexpr int Attempts = 3;

} // namespace

Snapshot::Snapshot(const QStringList& names, const QHash<QString, QString>& folders) {
    if (!folder_.isValid()) throw DataError(DataError::CannotOpen, folder_.errorString());
    for (int attempt = 1; !take(names, folders); ++attempt)
        if (attempt == Attempts)
            throw DataError(DataError::Busy, QStringLiteral("D'autres postes écrivent sans cesse dans ce dossier."));
}

bool Snapshot::take(const QStringList& names, const QHash<QString, QString>& folders) {
    struct Original {
        QString path, folder, name;
    };
    QList<Original> originals;
    std::vector<std::unique_ptr<HeldFile>> held;
    faults_.clear();
    for (const QString& name : names) {
        for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
            const QString path = QDir(folder.key()).filePath(name);
            if (!QFile::exists(path)) continue;
            try {
                held.push_back(std::make_unique<HeldFile>(path));
                originals.append({path, folder.value(), name});
            } catch (const DataError& error) {
                if ((error.number & 0xFF) == DataError::Busy) return false;
                faults_.emplace(path, error);
            }
        }
    }
    for (const Original& original : originals) copy(original.path, original.folder, original.name);
    return true;
}

void Snapshot::copy(const QString& path, const QString& folder, const QString& name) {
    const QDir into(folder_.filePath(folder));
    QDir().mkpath(into.path());
    QFile original(path);
    if (!original.copy(into.filePath(name)))
        throw DataError(DataError::CannotOpen,
                        QStringLiteral("Le fichier '%1' n'a pas pu être copié pour le contrôle : %2")
                            .arg(QDir::toNativeSeparators(path), original.errorString()));
    QFile::setPermissions(into.filePath(name), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

} // namespace molven

#include "dossier/staging.h"

#include "data/errors.h"
#include "data/file_rights.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

namespace molven {

namespace {

QString lockIn(const QString& folder) { return folder + QStringLiteral("/.verrou"); }

std::unique_ptr<HeldFile> locked(const QString& path) {
    return std::make_unique<HeldFile>(path, HeldFile::Hold::Alone, 0);
}

void removeAbandoned(const QDir& parent, const QString& name) {
    for (const QString& one : parent.entryList({name + u'-' + u'*'}, QDir::Dirs | QDir::Hidden)) {
        const QString folder = parent.filePath(one);
        if (!QFile::exists(lockIn(folder))) continue;
        try {
            locked(lockIn(folder));
        } catch (const DataError&) {
            continue; // somebody works in it
        }
        QDir(folder).removeRecursively();
    }
}

Refusal notWritable(const QString& folder) {
    return Refusal(QStringLiteral("Impossible d'écrire dans le dossier %1").arg(QDir::toNativeSeparators(folder)));
}

} // namespace

Staging::Staging(const QString& parent, const QString& name) {
    removeAbandoned(QDir(parent), name);
    const QString path = QStringLiteral("%1/%2-%3")
                             .arg(parent, name)
                             .arg(QRandomGenerator::system()->generate(), 8, 16, QLatin1Char('0'));
    QFile lock(lockIn(path));
    if (!QDir().mkdir(path) || !lock.open(QIODevice::WriteOnly)) throw notWritable(parent);
    lock.close();
    path_ = path;
    keepFromOthers(path_);
    lock_ = locked(lock.fileName());
}

Staging::~Staging() {
    lock_.reset();
    if (!path_.isEmpty()) QDir(path_).removeRecursively();
}

void Staging::moveTo(const QString& target) {
    keepAllFromOthers(path_);
    lock_.reset();
    QFile::remove(lockIn(path_));
    QDir().rmdir(target);
    if (!QDir().rename(path_, target)) throw notWritable(target);
    path_.clear();
}

} // namespace molven

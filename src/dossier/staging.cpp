#include "dossier/staging.h"

#include "data/errors.h"
#include "data/file_rights.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

namespace molven {

namespace {

QString lockIn(const QString& folder) { return folder + QStringLiteral("/.verrou"); }

/// The lock of a folder; none where somebody else has it, or had it and took the folder away.
std::unique_ptr<HeldFile> lockOf(const QString& folder) {
    if (!QFile::exists(lockIn(folder))) return nullptr;
    try {
        auto lock = std::make_unique<HeldFile>(lockIn(folder), HeldFile::Hold::Alone, 0);
        if (QFile::exists(lock->path())) return lock;
    } catch (const DataError&) {
        return nullptr;
    }
    return nullptr;
}

/// Stands in one that is whole.
QString markIn(const QString& folder) { return folder + QStringLiteral("/.complet"); }

/// Whether every part found its place; where one is refused, those before it are taken back.
bool pour(const QDir& from) {
    const QDir target(from.filePath(QStringLiteral("..")));
    QStringList poured;
    for (const QString& part : from.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name | QDir::DirsFirst)) {
        if (QDir().rename(from.filePath(part), target.filePath(part))) {
            poured.prepend(part);
            continue;
        }
        for (const QString& back : poured) QDir().rename(target.filePath(back), from.filePath(back));
        return false;
    }
    return true;
}

Refusal notWritable(const QString& folder) {
    return Refusal(QStringLiteral("Impossible d'écrire dans le dossier %1").arg(QDir::toNativeSeparators(folder)));
}

} // namespace

void Staging::settle(const QString& parent, const QString& name) {
    for (const QString& one : QDir(parent).entryList({name + u'-' + u'*'}, QDir::Dirs | QDir::Hidden)) {
        QDir folder(QDir(parent).filePath(one));
        const auto lock = lockOf(folder.path());
        if (!lock) continue; // somebody works in it
        if (QFile::exists(markIn(folder.path())) && !pour(folder)) continue;
        folder.removeRecursively();
    }
}

Staging::Staging(const QString& parent, const QString& name) {
    settle(parent, name);
    // Until it is locked, another program that settles takes it for one left behind, and takes it away.
    for (int tries = 0; !lock_; ++tries) {
        const QString path = QStringLiteral("%1/%2-%3")
                                 .arg(parent, name)
                                 .arg(QRandomGenerator::system()->generate(), 8, 16, QLatin1Char('0'));
        if (tries == 100 || !QDir().mkdir(path)) throw notWritable(parent);
        keepFromOthers(path);
        if (!QFile(lockIn(path)).open(QIODevice::WriteOnly)) throw notWritable(parent);
        lock_ = lockOf(path);
        if (lock_)
            path_ = path;
        else
            QDir(path).removeRecursively();
    }
}

Staging::~Staging() {
    lock_.reset();
    if (!path_.isEmpty()) QDir(path_).removeRecursively();
}

void Staging::moveTo(const QString& target) {
    keepAllFromOthers(path_);
    QFile::remove(lockIn(path_)); // while it is held: whoever gets it later sees that it is gone
    lock_.reset();
    QDir().rmdir(target);
    if (!QDir().rename(path_, target)) throw notWritable(target);
    path_.clear();
}

void Staging::pourOut() {
    keepAllFromOthers(path_);
    for (const QString& part : QDir(path_).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
        if (QFileInfo::exists(QDir(path_).filePath(QStringLiteral("../") + part)))
            throw Refusal(QStringLiteral("%1 existe déjà").arg(part));
    QFile mark(markIn(path_));
    if (!mark.open(QIODevice::WriteOnly)) throw notWritable(path_);
    mark.close();
    if (pour(QDir(path_))) return;
    mark.remove(); // what is taken away half is not to be poured out
    throw notWritable(QDir(path_).filePath(QStringLiteral("..")));
}

} // namespace molven

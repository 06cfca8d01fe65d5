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
        if (!QFile::exists(lockIn(folder.path()))) continue;
        try {
            locked(lockIn(folder.path()));
        } catch (const DataError&) {
            continue; // somebody works in it
        }
        if (QFile::exists(markIn(folder.path())) && !pour(folder)) continue;
        folder.removeRecursively();
    }
}

Staging::Staging(const QString& parent, const QString& name) {
    settle(parent, name);
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

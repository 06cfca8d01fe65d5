#include "data/file_rights.h"

#include "data/errors.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace molven {

void keepFromOthers(const QString& path) {
    QFile::Permissions rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::WriteGroup;
    if (QFileInfo(path).isDir()) rights |= QFile::ExeOwner | QFile::ExeGroup;
    if (!QFile::setPermissions(path, rights))
        throw Refusal(QStringLiteral("Impossible de réserver %1 à son propriétaire et à son groupe")
                          .arg(QDir::toNativeSeparators(path)));
}

void keepAllFromOthers(const QString& folder) {
    keepFromOthers(folder);
    QDirIterator parts(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (parts.hasNext()) keepFromOthers(parts.next());
}

bool isReadableByAll(const QString& file) {
#ifdef Q_OS_WIN
    Q_UNUSED(file);
    return false;
#else
    const QString path = QFileInfo(file).canonicalFilePath();
    if (path.isEmpty() || !(QFile::permissions(path) & QFile::ReadOther)) return false;
    for (QDir folder = QFileInfo(path).dir();; folder.cdUp()) {
        if (!(QFile::permissions(folder.path()) & QFile::ExeOther)) return false;
        if (folder.isRoot()) return true;
    }
#endif
}

} // namespace molven

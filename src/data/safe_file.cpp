#include "data/safe_file.h"

#include "data/errors.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace molven {

namespace {

Refusal unwritable(const QString& path, const QString& reason) {
    return Refusal(
        QStringLiteral("Impossible d'écrire le fichier %1 : %2").arg(QDir::toNativeSeparators(path), reason));
}

/// Why a file of so many bytes cannot be written, in words of ours where the disk tells.
QString reasonAt(const QString& path, qint64 size, const QString& otherwise) {
    const QFileInfo folder(QFileInfo(path).absolutePath());
    if (!folder.exists()) return QStringLiteral("le dossier n'existe pas");
    const QStorageInfo disk(folder.filePath());
    if (disk.isReadOnly()) return QStringLiteral("le disque est protégé en écriture");
    if (disk.bytesAvailable() < size) return QStringLiteral("le disque est plein");
    if (!folder.isWritable()) return QStringLiteral("accès refusé");
    return otherwise;
}

bool isOnDisk(const QFileDevice& file) {
#ifdef Q_OS_WIN
    return _commit(file.handle()) == 0;
#else
    return fsync(file.handle()) == 0;
#endif
}

} // namespace

void writeWhole(const QString& path, const QByteArray& bytes, Existing existing) {
    const QFileInfo there(path);
    if ((there.exists() || there.isSymLink()) && !there.isFile())
        throw unwritable(path, QStringLiteral("ce n'est pas un fichier ordinaire"));
    if (there.exists() && existing == Existing::Refuse) throw unwritable(path, QStringLiteral("il existe déjà"));
    QSaveFile file(path);
    // What waits in the memory of the program would be lost without a word: it is flushed before the names change.
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw unwritable(path, reasonAt(path, bytes.size(), file.errorString()));
    if (!isOnDisk(file) || file.size() != bytes.size())
        throw unwritable(path, reasonAt(path, bytes.size(), qt_error_string()));
    if (!file.commit()) throw unwritable(path, reasonAt(path, 0, file.errorString()));
}

void flushToDisk(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) throw unwritable(path, file.errorString());
    if (!isOnDisk(file)) throw unwritable(path, qt_error_string());
}

void takePlace(const QString& file, const QString& path) {
    std::error_code fault;
    std::filesystem::rename(file.toStdU16String(), path.toStdU16String(), fault);
    if (fault) throw unwritable(path, QString::fromLocal8Bit(fault.message().c_str()));
}

QString freeName(const QString& path) {
    const QFileInfo file(path);
    const QString ending = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    QString name = path;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = QStringLiteral("%1/%2-%3%4").arg(file.path(), file.completeBaseName()).arg(i).arg(ending);
    return name;
}

} // namespace molven

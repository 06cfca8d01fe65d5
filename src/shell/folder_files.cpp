#include "shell/folder_files.h"

#include "data/errors.h"
#include "data/safe_file.h"
#include "data/server_address.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

namespace molven {

namespace {

/// The files are written by hand or by old Windows programs: UTF-8 when valid, Latin-1 otherwise.
QString decoded(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

} // namespace

std::optional<QString> firstLine(const QString& path) {
    if (!QFile::exists(path)) return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(QStringLiteral("Impossible de lire le fichier %1").arg(QDir::toNativeSeparators(path)));
    return decoded(file.readLine(4096)).trimmed();
}

QString usableFolder(const QString& programFolder, const QString& typed) {
    QString folder = typed.trimmed();
    if (server_address::isOne(folder)) return server_address::folder(folder);
    if (QDir::separator() == u'/') folder.replace(u'\\', u'/');
    if (QDir::isRelativePath(folder)) folder = programFolder + u'/' + folder;
    folder = QDir::cleanPath(folder);
    return folder.endsWith(u'/') ? folder : folder + u'/';
}

std::optional<QString> folderFrom(const QString& programFolder, const QString& fileName) {
    const auto line = firstLine(programFolder + u'/' + fileName);
    if (!line) return std::nullopt;
    return usableFolder(programFolder, *line);
}

void writeLine(const QString& path, const QString& line) { writeWhole(path, line.toUtf8() + "\r\n"); }

} // namespace molven

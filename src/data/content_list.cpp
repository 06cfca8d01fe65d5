#include "data/content_list.h"

#include "data/errors.h"
#include "data/safe_file.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

namespace molven::content_list {

namespace {

constexpr int DigestLength = 64;
const QByteArray Gap("  ");

/// Empty for a file that cannot be read.
QByteArray contentDigest(const QString& path) {
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) return {};
    return hash.result().toHex();
}

} // namespace

void write(const QString& folder, const QStringList& names) {
    const QDir place(folder);
    QByteArray list;
    for (const QString& name : names) list += contentDigest(place.filePath(name)) + Gap + name.toUtf8() + '\n';
    try {
        writeWhole(place.filePath(Name), list);
    } catch (const Refusal&) {
        QFile::remove(place.filePath(Name)); // that of an earlier backup tells nothing of this one
        throw;
    }
}

QStringList faults(const QString& folder) {
    const QDir place(folder);
    QFile file(place.filePath(Name));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QStringList found;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.isEmpty()) continue;
        const QString name = QString::fromUtf8(line.mid(DigestLength + Gap.size()));
        if (!QFile::exists(place.filePath(name)))
            found.append(name + QStringLiteral(" : absent"));
        else if (contentDigest(place.filePath(name)) != line.left(DigestLength))
            found.append(name + QStringLiteral(" : modifié depuis la sauvegarde"));
    }
    return found;
}

} // namespace molven::content_list

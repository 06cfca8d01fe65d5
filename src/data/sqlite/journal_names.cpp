#include "data/sqlite/journal_names.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtEndian>

namespace molven::sqlite {

namespace {

const QByteArray Mark = QByteArrayLiteral("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7");
const QString JournalEnd = QStringLiteral("-journal");

QByteArray bigEndian(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

/// As the engine sums a name: by its characters, signed where the machine's are.
quint32 sumOf(const QByteArray& name) {
    quint32 sum = 0;
    for (const char c : name) sum += static_cast<quint32>(c);
    return sum;
}

QString folderOf(const QString& path) { return QFileInfo(path).path(); }

/// The super-journal that a journal on disk waits for; empty when it names none.
QString awaitedBy(const QString& journal) {
    QFile file(journal);
    if (!file.open(QIODevice::ReadOnly)) return {};
    constexpr qint64 LongestName = 4096;
    file.seek(qMax<qint64>(0, file.size() - LongestName - EndingLength));
    const QByteArray name = namedBy(file.readAll());
    return name.isEmpty() ? QString() : QString::fromUtf8(resolved(folderOf(journal), name));
}

} // namespace

bool isSuperJournal(const QString& path) {
    static const QRegularExpression name(QStringLiteral("-mj[0-9A-F]{6}9[0-9A-F]{2}$"));
    return name.match(path).hasMatch();
}

QString databaseOf(const QString& journal) { return journal.left(journal.lastIndexOf(u'-')); }

QByteArray kept(const QString& folder, const QByteArray& path) {
    return QDir(folder).relativeFilePath(QDir::fromNativeSeparators(QString::fromUtf8(path))).toUtf8();
}

QByteArray resolved(const QString& folder, const QByteArray& text) {
    return QDir::cleanPath(QDir(folder).absoluteFilePath(QString::fromUtf8(text))).toUtf8();
}

QByteArray ending(const QByteArray& name) {
    return name + bigEndian(static_cast<quint32>(name.size())) + bigEndian(sumOf(name)) + Mark;
}

QByteArray namedBy(const QByteArray& lastBytes) {
    if (lastBytes.size() < EndingLength || !lastBytes.endsWith(Mark)) return {};
    const auto length = qFromBigEndian<quint32>(lastBytes.constData() + lastBytes.size() - EndingLength);
    if (length == 0 || length > lastBytes.size() - EndingLength) return {};
    const QByteArray name = lastBytes.mid(lastBytes.size() - EndingLength - length, length);
    return lastBytes.endsWith(ending(name)) ? name : QByteArray();
}

bool isAwaited(const QString& superJournal) {
    QFile file(superJournal);
    if (!file.open(QIODevice::ReadOnly)) return QFile::exists(superJournal);
    QList<QByteArray> names = file.readAll().split('\0');
    names.removeLast(); // nothing, or a name cut short: then no journal waits yet
    for (const QByteArray& text : names) {
        const QString journal = QString::fromUtf8(resolved(folderOf(superJournal), text));
        if (!QFile::exists(databaseOf(journal)) || awaitedBy(journal) == superJournal) return true;
    }
    return false;
}

void sweepSuperJournals(const QString& database) {
    const QFileInfo file(database);
    for (const QString& name : file.dir().entryList({file.fileName() + QStringLiteral("-mj*")}, QDir::Files)) {
        const QString path = file.dir().filePath(name);
        if (isSuperJournal(path) && !isAwaited(path)) QFile::remove(path);
    }
}

} // namespace molven::sqlite

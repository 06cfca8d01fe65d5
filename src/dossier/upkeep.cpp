#include "dossier/upkeep.h"

#include "data/clock.h"
#include "data/compaction.h"
#include "data/content_list.h"
#include "data/dates.h"
#include "data/file_copies.h"
#include "data/file_rights.h"
#include "data/presence.h"
#include "data/require.h"
#include "data/server_address.h"
#include "dossier/user_folders.h"
#include "shell/folder_files.h"

#include <QDir>
#include <QFileInfo>

namespace molven::upkeep {

namespace {

const QString FirstWorkstation = QStringLiteral("AX"), Generation = QStringLiteral("sauvegarde-");

QStringList stationFolders() {
    return {FirstWorkstation, QStringLiteral("P1"), QStringLiteral("P2"), QStringLiteral("P3")};
}

void requireElsewhere(const Session& session, const QString& target, const QString& box) {
    require(QDir(target).canonicalPath() != QDir(session.chemin_base).canonicalPath(),
            QStringLiteral("La sauvegarde ne peut pas se faire dans le dossier des données"), box);
}

/// The files of a server are the server's.
void requireFolder(const Session& session) {
    require(
        !server_address::isOne(session.chemin_base),
        QStringLiteral("Ce dossier est sur un serveur : c'est là que l'administrateur le sauvegarde et le compacte"),
        QString());
}

/// The files of a folder that are saved.
QStringList savedNames(const QString& folder) {
    QStringList names = QDir(folder).entryList({QStringLiteral("*.mdb")}, QDir::Files, QDir::Name);
    names.removeIf([](const QString& name) { return name.startsWith(u"tri") || name.startsWith(u"TRI"); });
    return names;
}

void addCopies(QList<file_copies::Copy>& copies, const QString& from, const QString& to) {
    for (const QString& name : savedNames(from)) copies.append({QDir(from).filePath(name), QDir(to).filePath(name)});
}

Saved save(const QList<file_copies::Copy>& copies, const QString& target, const Progress& progress) {
    Saved saved;
    const QList<qint64> sizes = file_copies::make(copies, progress);
    QStringList names;
    for (const file_copies::Copy& copy : copies) names.append(QDir(target).relativeFilePath(copy.to));
    content_list::write(target, names);
    for (qsizetype i = 0; i < sizes.size(); ++i) {
        saved.bytes += sizes[i];
        saved.files.append(QStringLiteral("%1, %2 Ko").arg(QFileInfo(copies[i].to).fileName()).arg(sizes[i] / 1024));
    }
    return saved;
}

/// Lies in the data folder and says when it was last saved.
QString backupMark(const Session& session) { return session.chemin_base + QStringLiteral("SAUVEGARDE.HC"); }

void markBackup(const Session& session) {
    try {
        writeLine(backupMark(session), sortKey(Clock::today()));
    } catch (const Refusal&) { // the copies are made, and whole
    }
}

QStringList generations(const QString& folder) {
    return QDir(folder).entryList({Generation + u'*'}, QDir::Dirs, QDir::Name);
}

/// Folders of the dossier beside the data folder, by the name that their copy bears.
QMap<QString, QString> otherFolders(const Session& session) {
    QMap<QString, QString> folders;
    for (const QString& user : user_folders::below(session.chemin_base))
        folders.insert(user, session.chemin_base + user);
    for (const QString& folder : {session.chemin_util, session.chemin_gv})
        if (!folder.isEmpty() && QDir(folder) != QDir(session.chemin_base))
            folders.insert(QDir(QDir::cleanPath(folder)).dirName(), folder);
    return folders;
}

Verified verifyOne(const QDir& folder) {
    Verified found;
    found.folder = folder.path();
    QStringList names = folder.entryList({QStringLiteral("*.mdb")}, QDir::Files, QDir::Name);
    if (!names.contains(catalogueEntry(DataFile::Molven).name, Qt::CaseInsensitive))
        found.faults.append(QStringLiteral("molven.mdb est absent"));
    for (const QString& user : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        for (const QString& name : QDir(folder.filePath(user)).entryList({QStringLiteral("*.mdb")}, QDir::Files))
            names.append(user + u'/' + name);
    found.faults += content_list::faults(folder.path());
    for (const QString& name : names) {
        ++found.files;
        found.bytes += QFileInfo(folder.filePath(name)).size();
        if (dataFileAt(name) && !file_copies::isDatabase(folder.filePath(name)))
            found.faults.append(name + QStringLiteral(" : n'est pas une base de données"));
        for (const QString& fault : file_copies::faults(folder.filePath(name)))
            found.faults.append(name + QStringLiteral(" : ") + fault);
    }
    return found;
}

/// What is compacted, in order.
QStringList compactedFiles(const Session& session) {
    QStringList files;
    if (!session.rules().isSecondSite() && !session.rules().sharesUnitsOnly()) files.append(session.molven());
    return files + QStringList{session.tri(), session.historic(), session.vente()};
}

} // namespace

void requireBackupHere(const Session& session) {
    require(!session.rules().backsUpUserFolders() || session.util_dossier == FirstWorkstation,
            QStringLiteral("La sauvegarde doit se faire sur le poste d'Odalie"), QString());
}

void requireDisk(const QString& typed) {
    require(!typed.trimmed().isEmpty(), QStringLiteral("Aucune lettre"), QStringLiteral("txtdisk"));
}

QString backupTarget(const Session& session, const QString& typed) {
    const QString text = typed.trimmed(), box = QStringLiteral("txtdisk");
    const bool isDrive = text.size() == 1 && QDir::separator() == u'\\';
    const QString target = isDrive ? text + QStringLiteral(":/") : usableFolder(session.dossier_app, text);
    require(QDir(target).exists(), QStringLiteral("Le dossier %1 n'existe pas").arg(QDir::toNativeSeparators(target)),
            box);
    requireElsewhere(session, target, box);
    return target;
}

Saved backUp(const Session& session, const QString& target, const Progress& progress) {
    requireBackupHere(session);
    requireFolder(session);
    QList<file_copies::Copy> copies;
    addCopies(copies, session.chemin_base, target);
    if (session.rules().backsUpUserFolders())
        for (const QString& user : stationFolders())
            addCopies(copies, session.chemin_base + user, QDir(target).filePath(user));
    const Saved saved = save(copies, target, progress);
    markBackup(session);
    return saved;
}

QDate lastBackup(const Session& session) {
    return QDate::fromString(firstLine(backupMark(session)).value_or(QString()), QStringLiteral("yyyyMMdd"));
}

QString addGeneration(const Session& session, const QString& target, int kept, const Progress& progress) {
    requireFolder(session);
    requireElsewhere(session, target, QString());
    // A disk that is not there must not become a folder of the machine's own.
    require(QDir(target).exists() || QDir().mkdir(target),
            QStringLiteral("Impossible d'écrire dans le dossier %1").arg(target), QString());
    const QString name = Generation + Clock::now().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QDir folder(target);
    const QString unfinished = folder.filePath(u'.' + Generation + QStringLiteral("en-cours"));
    QDir(unfinished).removeRecursively();
    QList<file_copies::Copy> copies;
    addCopies(copies, session.chemin_base, unfinished);
    const auto others = otherFolders(session);
    for (auto other = others.begin(); other != others.end(); ++other)
        addCopies(copies, other.value(), QDir(unfinished).filePath(other.key()));
    for (const file_copies::Copy& copy : copies) QDir().mkpath(QFileInfo(copy.to).path());
    keepFromOthers(unfinished);
    try {
        save(copies, unfinished, progress);
    } catch (...) {
        QDir(unfinished).removeRecursively();
        throw;
    }
    require(QDir().rename(unfinished, folder.filePath(name)),
            QStringLiteral("Impossible d'écrire dans le dossier %1").arg(target), QString());
    markBackup(session);
    const QStringList all = generations(target);
    for (qsizetype i = 0; kept > 0 && i < all.size() - kept; ++i) QDir(folder.filePath(all[i])).removeRecursively();
    return folder.filePath(name);
}

QList<Verified> verify(const QString& folder) {
    const QDir place(folder);
    const QStringList dated = generations(folder);
    require(!dated.isEmpty() || !place.entryList({QStringLiteral("*.mdb")}, QDir::Files).isEmpty(),
            QStringLiteral("Aucune sauvegarde dans le dossier %1").arg(folder), QString());
    QList<Verified> all;
    for (const QString& name : dated) all.append(verifyOne(QDir(place.filePath(name))));
    if (dated.isEmpty()) all.append(verifyOne(place));
    return all;
}

void compact(const Session& session, const Progress& progress) {
    requireFolder(session);
    const QStringList files = compactedFiles(session);
    QStringList folders{session.chemin_base};
    for (const QString& file : files) folders.append(QFileInfo(file).path());
    const Presence alone(folders, Presence::Kind::Alone);
    for (qsizetype i = 0; i < files.size(); ++i)
        compaction::compact(files[i], [&](int, int) {
            return !progress || progress(static_cast<int>(i), static_cast<int>(files.size()));
        });
}

} // namespace molven::upkeep

#include "dossier/restoration.h"

#include "data/clock.h"
#include "data/content_list.h"
#include "data/database.h"
#include "data/errors.h"
#include "data/file_rights.h"
#include "data/presence.h"
#include "data/safe_file.h"
#include "data/sqlite/connection.h"
#include "shell/folder_files.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

namespace molven::restoration {

namespace {

const QString Staging = QStringLiteral(".restauration"), SetAside = QStringLiteral("avant-restauration-");

/// The data folder of the dossier, found without opening its files: they may be what is damaged.
QString dataFolder(const QString& installation, const QString& name) {
    Session session;
    session.dossier_app = QDir(installation).absolutePath();
    if (!QFile::exists(session.path(DataFile::Societe))) {
        const auto folder = folderFrom(session.dossier_app, QStringLiteral("CHEMIN.HC"));
        if (!folder) throw Refusal(QStringLiteral("Le dossier %1 ne contient pas d'installation").arg(installation));
        return *folder;
    }
    const Record dossier = startup::dossierNamed(startup::dossiers(session), name);
    return usableFolder(session.dossier_app, dossier[strsociete.soc_chemin]);
}

void requireMove(bool isMoved, const QString& path) {
    if (!isMoved) throw Refusal(QStringLiteral("Impossible de déplacer %1").arg(QDir::toNativeSeparators(path)));
}

/// The backup's files with their journals, on this disk.
void stage(const QDir& backup, const QDir& staging) {
    const QStringList wanted{QStringLiteral("*.mdb"), QStringLiteral("*.mdb-journal"), QStringLiteral("*.mdb-mj*")};
    for (const QString& name : backup.entryList(wanted, QDir::Files)) {
        if (name.startsWith(u"tri", Qt::CaseInsensitive)) continue; // work files are in no backup
        if (!QFile::copy(backup.filePath(name), staging.filePath(name)))
            throw Refusal(
                QStringLiteral("Impossible de copier %1").arg(QDir::toNativeSeparators(backup.filePath(name))));
        keepFromOthers(staging.filePath(name));
        flushToDisk(staging.filePath(name));
    }
}

/// Undoes or finishes what was being written when the backup was made, and reads each file whole.
QStringList sound(const QDir& staging) {
    const QStringList names = staging.entryList({QStringLiteral("*.mdb")}, QDir::Files);
    if (!names.contains(catalogueEntry(DataFile::Molven).name, Qt::CaseInsensitive))
        throw Refusal(QStringLiteral("La sauvegarde ne contient pas le fichier molven.mdb"));
    for (const QString& name : names) {
        Workspace workspace;
        Database file = workspace.open(staging.filePath(name));
        QStringList faults = file.integrityFaults();
        if (const auto known = dataFileAt(name))
            for (const Table* table : tablesOf(*known))
                if (!file.hasTable(*table)) faults.append(QStringLiteral("table %1 absente").arg(table->name));
        if (!faults.isEmpty())
            throw Refusal(
                QStringLiteral("Le fichier %1 de la sauvegarde est endommagé : %2").arg(name, faults.first()));
    }
    return names;
}

/// Files of different days do not go together: units of one, documents of another.
void requireWhole(const QDir& folder, const QStringList& names) {
    QStringList missing;
    for (const QString& name : folder.entryList({QStringLiteral("*.mdb")}, QDir::Files))
        if (!names.contains(name, Qt::CaseInsensitive) && !name.startsWith(u"tri", Qt::CaseInsensitive))
            missing.append(name);
    if (!missing.isEmpty())
        throw Refusal(
            QStringLiteral("La sauvegarde ne contient pas %1 : elle n'est pas entière (--partielle la reprend "
                           "tout de même)")
                .arg(missing.join(QStringLiteral(", "))));
}

/// What the backup's own list tells: a file lost or changed since it was made.
void requireAsMade(const QString& backup) {
    if (const QStringList faults = content_list::faults(backup); !faults.isEmpty())
        throw Refusal(
            QStringLiteral(
                "La sauvegarde n'est plus telle qu'elle a été faite, %1 (--partielle la reprend tout de même)")
                .arg(faults.join(QStringLiteral(", "))));
}

/// The company whose data a file holds; empty when the file is too damaged to tell.
QString companyOf(const QString& path) {
    try {
        Workspace workspace;
        const auto company = workspace.open(path).find(strspecif, {});
        return company ? company->value(strspecif.spe_cod) + u' ' + company->value(strspecif.spe_nom) : QString();
    } catch (const DataError&) {
        return {};
    }
}

void requireSameCompany(const QDir& folder, const QDir& staging) {
    const QString& file = catalogueEntry(DataFile::Molven).name;
    const QString ours = companyOf(folder.filePath(file)), theirs = companyOf(staging.filePath(file));
    if (!ours.isEmpty() && !theirs.isEmpty() && ours.section(u' ', 0, 0) != theirs.section(u' ', 0, 0))
        throw Refusal(QStringLiteral("La sauvegarde est celle de %1, le dossier celui de %2").arg(theirs, ours));
}

/// Undoes or finishes what was being written in the dossier, its users' folders included: their journals stand on files
/// that are about to be replaced. A file too damaged to be opened is left as it is.
void settle(const QString& folder) {
    QDirIterator files(folder, {QStringLiteral("*.mdb")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.contains(SetAside)) continue;
        try {
            Workspace workspace;
            workspace.open(path);
            const Transaction alone(workspace);
        } catch (const DataError& error) {
            if (error.number == DataError::Busy) throw;
        }
    }
}

void exchange(const QDir& folder, const QDir& staging, const QDir& setAside, const QStringList& names) {
    for (const QString& name : names) {
        const QStringList former =
            folder.entryList({name, name + QStringLiteral("-journal"), name + QStringLiteral("-mj*")}, QDir::Files);
        for (const QString& part : former)
            requireMove(QFile::rename(folder.filePath(part), setAside.filePath(part)), folder.filePath(part));
        if (const QString before = setAside.filePath(name); QFile::exists(before))
            QFile::setPermissions(staging.filePath(name), QFile::permissions(before));
        requireMove(QFile::rename(staging.filePath(name), folder.filePath(name)), folder.filePath(name));
    }
}

} // namespace

Outcome restore(const QString& installation, const QString& backup, const QString& name, Extent extent) {
    const QDir folder(dataFolder(installation, name));
    if (!QDir(backup).exists()) throw Refusal(QStringLiteral("Le dossier %1 n'existe pas").arg(backup));
    const Presence alone({folder.path()}, Presence::Kind::Alone);
    for (const QString& left : folder.entryList({Staging + u'*'}, QDir::Dirs | QDir::Hidden))
        QDir(folder.filePath(left)).removeRecursively();
    const QTemporaryDir staging(folder.filePath(Staging));
    if (!staging.isValid()) throw Refusal(QStringLiteral("Impossible d'écrire dans le dossier %1").arg(folder.path()));
    if (extent == Extent::Whole) requireAsMade(backup);
    stage(QDir(backup), QDir(staging.path()));
    const QStringList names = sound(QDir(staging.path()));
    if (extent == Extent::Whole) requireWhole(folder, names);
    requireSameCompany(folder, QDir(staging.path()));
    settle(folder.path());

    const QString today = Clock::today().toString(QStringLiteral("yyyyMMdd"));
    const QString setAside = freeName(folder.filePath(SetAside + today));
    requireMove(QDir().mkdir(setAside), setAside);
    keepFromOthers(setAside);
    const QString mark = folder.filePath(startup::RestorationMark);
    writeWhole(mark, setAside.toUtf8());
    exchange(folder, QDir(staging.path()), QDir(setAside), names);
    requireMove(QFile::remove(mark), mark);
    return {names, setAside};
}

} // namespace molven::restoration

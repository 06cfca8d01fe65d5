#include "dossier/restoration.h"

#include "data/clock.h"
#include "data/content_list.h"
#include "data/database.h"
#include "data/errors.h"
#include "data/file_rights.h"
#include "data/presence.h"
#include "data/safe_file.h"
#include "data/sqlite/connection.h"
#include "dossier/user_folders.h"
#include "shell/folder_files.h"
#include "shell/startup.h"
#include "shell/tables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace molven::restoration {

namespace {

const QString Staging = QStringLiteral(".restauration");

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

/// Where the files of a backup go: the data folder, the users' folders below it and that of the second site.
class Places {
public:
    Places(const QString& installation, const QString& name) : base_(dataFolder(installation, name)) {
        if (const auto site = folderFrom(QDir(installation).absolutePath(), QStringLiteral("CHEMIN_GV.HC"))) {
            second_ = QDir::cleanPath(*site);
            folders_.append(QDir(second_).dirName());
        }
        for (const QString& user : user_folders::below(base_.path()))
            if (!folders_.contains(user)) folders_.append(user);
    }

    const QDir& base() const { return base_; }
    /// Names of the folders that the dossier has beside its data folder.
    const QStringList& folders() const { return folders_; }
    /// The folder of such a name, the data folder for none.
    QDir folder(const QString& name) const {
        const bool isSecond = !name.isEmpty() && name == QDir(second_).dirName();
        return QDir(isSecond ? second_ : base_.filePath(name));
    }
    /// Where a file of the backup belongs, by its name there.
    QString of(const QString& file) const { return folder(file.section(u'/', 0, -2)).filePath(file.section(u'/', -1)); }
    QStringList paths() const {
        QStringList all{base_.path()};
        for (const QString& name : folders_) all.append(folder(name).path());
        return all;
    }

private:
    QDir base_;
    QString second_; ///< empty without
    QStringList folders_;
};

void requireMove(bool isMoved, const QString& path) {
    if (!isMoved) throw Refusal(QStringLiteral("Impossible de déplacer %1").arg(QDir::toNativeSeparators(path)));
}

/// A folder of the backup's files with their journals, on this disk.
void stageFolder(const QDir& backup, const QDir& staging) {
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

void stage(const QDir& backup, const QDir& staging) {
    stageFolder(backup, staging);
    for (const QString& folder : user_folders::below(backup.path())) {
        requireMove(staging.mkdir(folder), folder);
        stageFolder(backup.filePath(folder), staging.filePath(folder));
    }
}

/// The database files of a folder and of those below it that are named, by their names in it.
QStringList databases(const QDir& folder, const QStringList& below) {
    QStringList names = folder.entryList({QStringLiteral("*.mdb")}, QDir::Files);
    for (const QString& one : below)
        for (const QString& name : QDir(folder.filePath(one)).entryList({QStringLiteral("*.mdb")}, QDir::Files))
            names.append(one + u'/' + name);
    return names;
}

/// Undoes or finishes what was being written when the backup was made, and reads each file whole.
QStringList sound(const QDir& staging) {
    const QStringList names = databases(staging, user_folders::below(staging.path()));
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
void requireWhole(const Places& places, const QStringList& names) {
    QStringList missing;
    for (const QString& folder : QStringList{QString()} + places.folders())
        for (const QString& name : places.folder(folder).entryList({QStringLiteral("*.mdb")}, QDir::Files)) {
            const QString there = folder.isEmpty() ? name : folder + u'/' + name;
            if (!names.contains(there, Qt::CaseInsensitive) && !name.startsWith(u"tri", Qt::CaseInsensitive))
                missing.append(there);
        }
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

/// Undoes or finishes what was being written in a folder of the dossier: its journals stand on files that are about to
/// be replaced. A file too damaged to be opened is left as it is.
void settle(const QString& folder) {
    for (const QString& name : QDir(folder).entryList({QStringLiteral("*.mdb")}, QDir::Files)) {
        const QString path = QDir(folder).filePath(name);
        try {
            Workspace workspace;
            workspace.open(path);
            const Transaction alone(workspace);
        } catch (const DataError& error) {
            if (error.number == DataError::Busy) throw;
        }
    }
}

void exchange(const Places& places, const QDir& staging, const QDir& setAside, const QStringList& names) {
    for (const QString& name : names) {
        const QFileInfo target(places.of(name));
        const QDir folder = target.dir(), former = QFileInfo(setAside.filePath(name)).dir();
        for (const QDir& place : {folder, former})
            if (!place.exists()) {
                requireMove(QDir().mkpath(place.path()), place.path());
                keepFromOthers(place.path());
            }
        const QString file = target.fileName();
        const QStringList parts{file, file + QStringLiteral("-journal"), file + QStringLiteral("-mj*")};
        for (const QString& part : folder.entryList(parts, QDir::Files))
            requireMove(QFile::rename(folder.filePath(part), former.filePath(part)), folder.filePath(part));
        if (const QString before = former.filePath(file); QFile::exists(before))
            QFile::setPermissions(staging.filePath(name), QFile::permissions(before));
        requireMove(QFile::rename(staging.filePath(name), target.filePath()), target.filePath());
    }
}

} // namespace

Outcome restore(const QString& installation, const QString& backup, const QString& name, Extent extent) {
    const Places places(installation, name);
    const QDir& folder = places.base();
    if (!QDir(backup).exists()) throw Refusal(QStringLiteral("Le dossier %1 n'existe pas").arg(backup));
    const Presence alone(places.paths(), Presence::Kind::Alone);
    for (const QString& left : folder.entryList({Staging + u'*'}, QDir::Dirs | QDir::Hidden))
        QDir(folder.filePath(left)).removeRecursively();
    const QTemporaryDir staging(folder.filePath(Staging));
    if (!staging.isValid()) throw Refusal(QStringLiteral("Impossible d'écrire dans le dossier %1").arg(folder.path()));
    if (extent == Extent::Whole) requireAsMade(backup);
    stage(QDir(backup), QDir(staging.path()));
    const QStringList names = sound(QDir(staging.path()));
    if (extent == Extent::Whole) requireWhole(places, names);
    requireSameCompany(folder, QDir(staging.path()));
    for (const QString& place : places.paths()) settle(place);

    const QString today = Clock::today().toString(QStringLiteral("yyyyMMdd"));
    const QString setAside = freeName(folder.filePath(user_folders::SetAside + today));
    requireMove(QDir().mkdir(setAside), setAside);
    keepFromOthers(setAside);
    const QString mark = folder.filePath(startup::RestorationMark);
    writeWhole(mark, setAside.toUtf8());
    exchange(places, QDir(staging.path()), QDir(setAside), names);
    requireMove(QFile::remove(mark), mark);
    return {names, setAside};
}

} // namespace molven::restoration

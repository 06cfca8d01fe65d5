#pragma once

#include "data/progress.h"
#include "shell/session.h"

#include <QDate>
#include <QStringList>

/// Works on the files of a dossier whole: backup and compaction.
namespace molven::upkeep {

/// Throws Refusal "La sauvegarde doit se faire sur le poste d'Odalie" where the folders of all users are saved by one
/// workstation and this is another.
void requireBackupHere(const Session& session);
/// Throws Refusal "Aucune lettre" where neither a letter nor a folder is typed.
void requireDisk(const QString& typed);
/// The folder that a drive letter stands for, or the folder typed; a relative one starts at the program folder. To be
/// asked once the disk is in: throws Refusal for a folder that is not there, and for the data folder itself.
QString backupTarget(const Session& session, const QString& typed);

/// The day of the last backup that the program made of the dossier; an invalid date when it knows of none.
QDate lastBackup(const Session& session);

struct Saved {
    QStringList files; ///< names with their sizes, "vente.mdb, 210 Ko"
    qint64 bytes = 0;
};

/// Copies every "*.mdb" file of the data folder but those whose name begins with "tri" or "TRI" to a disk, and where
/// the company has them those of its four users' folders into the folders of the same names, which must stand there.
/// All copies are of one moment, whole and checked before the first takes the place of an older one. Throws DataError
/// and Refusal; what was saved before is as it was then.
Saved backUp(const Session& session, const QString& target, const Progress& progress);

/// The same, with the folders of all users and sites, as one more dated folder of `target`, which is answered; of the
/// others the newest stay, `kept` in all, 0 for all.
QString addGeneration(const Session& session, const QString& target, int kept, const Progress& progress);

/// A backup, and what is wrong with it in French lines; none for a sound one.
struct Verified {
    QString folder;
    int files = 0;
    qint64 bytes = 0;
    QStringList faults;
};
/// Reads a backup whole, or each dated one of a folder. Throws Refusal where there is none.
QList<Verified> verify(const QString& folder);

/// Compacts the files of the dossier one after the other. Throws DataError, and Refusal while other workstations work
/// in it; every file is whole then.
void compact(const Session& session, const Progress& progress);

} // namespace molven::upkeep

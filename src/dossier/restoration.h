#pragma once

#include <QStringList>

namespace molven::restoration {

struct Outcome {
    QStringList files; ///< the database files put back, by their names in the backup
    QString setAside;  ///< folder that keeps those they replaced, with their journals
};

/// Whether a backup must hold every file that the dossier has.
enum class Extent { Whole, Partial };

/// Puts the database files of a backup (a folder of "*.mdb" files) in the place of those of an installation's dossier,
/// named as startup::dossierNamed() takes it where societe.mdb lists several, those of its users' folders and of its
/// second site included. A backup of another company is refused.
/// Interrupted writings are finished or undone first, on both sides, so that no journal meets a file that is not its
/// own. A fault before the exchange changes nothing; during it, the dossier does not open until this is done again.
/// Throws Refusal for what is no sound backup, DataError for a file in use elsewhere.
Outcome restore(const QString& installation, const QString& backup, const QString& name, Extent extent = Extent::Whole);

} // namespace molven::restoration

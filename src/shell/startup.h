#pragma once

#include "data/record.h"
#include "shell/session.h"

#include <QList>

namespace molven {

/// The steps from an empty session to an open dossier.
namespace startup {

/// Lies in a data folder while the files of a backup are being put there; the dossier does not open meanwhile.
inline const QString RestorationMark = QStringLiteral("RESTAURATION.HC");

/// Finishes compactions that were interrupted in the folders that the session knows so far, the data folder at least;
/// answers the files, "vente.mdb". Throws Refusal while another workstation is at it, DataError.
QStringList finishCompactions(const Session& session);

/// Login window: data folder and company code. Throws Refusal when CHEMIN.HC is missing or a restoration is not
/// finished, DataError when the data cannot be read.
void readCompany(Session& session);

/// Main window: work folder, second site's folder; false when the user must choose a dossier first, true when
/// the data folder is known. Throws Refusal when a folder file is missing.
bool readFolders(Session& session);

/// The dossiers of societe.mdb in table order, after adding the user sub-folder to a file of an older version.
QList<Record> dossiers(const Session& session);

/// Name of the folder that holds the data of a dossier of societe.mdb, "data_lb".
QString folderName(const Record& dossier);

/// The dossier that a text names: by its word, its name or its data folder; the only one for an empty text. Throws
/// Refusal with the names of the dossiers, never their words, which are what opens them.
Record dossierNamed(const QList<Record>& dossiers, const QString& text);

/// The folders, each ending with "/", where other users of the dossier and its second site keep their sales documents:
/// those of the units are never in one file alone.
QStringList otherFolders(const Session& session);

/// Takes a dossier as chosen; throws Refusal " Mot de Passe Incorrect" unless the typed word is the dossier's.
/// Returns nothing: the session holds the dossier's folders.
void chooseDossier(Session& session, const Record& dossier, const QString& typedWord);

/// Reads the company's values into the session. Throws DataError, and Refusal while a restoration is not finished.
void openDossier(Session& session);

/// Title of the main window of the open dossier.
QString mainTitle(const Session& session);
/// Full path of the logo, whether or not it exists. Read before openDossier() renames a company.
QString logoFile(const Session& session, const QString& company);

} // namespace startup
} // namespace molven

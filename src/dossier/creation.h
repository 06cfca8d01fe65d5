#pragma once

#include "shell/session.h"

#include <functional>

namespace molven::creation {

struct Options {
    QString folder;              ///< program folder of the installation
    QString code;                ///< company code, two letters
    QString name;                ///< company name
    bool addToSocieties = false; ///< list the dossier in societe.mdb, beside those the installation already has
    QString server = {};         ///< address of the database that the dossier lies in, none for a folder
};

/// Makes a new installation in a folder that holds none: folder files, data and work folders, every database
/// file with its tables and the entries a dossier cannot do without. With `addToSocieties`, a folder that holds
/// an installation gets one more dossier instead. Whole or not at all. What it makes is for
/// its owner and its group alone, since it will hold patients. `fill` may write into the dossier before it stands in
/// its place: what it throws leaves nothing behind. Throws Refusal. Answers the session of the dossier made.
Session create(const Options& options, const std::function<void(const Session&)>& fill = {});

/// Goes on where a program was killed while an installation took its place in this folder.
void finish(const QString& folder);

/// What is meant by the place that a user names: a folder, or the address of a server.
QString placeOf(const QString& typed);

/// The session of an installation's dossier, opened without a login, for programs without windows: the one that
/// startup::dossierNamed() finds, the first where none is named. An address stands for an installation of its dossier.
Session open(const QString& folder, const QString& name = {});

} // namespace molven::creation

#pragma once

#include "data/catalogue.h"
#include "data/progress.h"
#include "shell/session.h"

#include <QList>
#include <QStringList>

/// Dossiers that move whole from a folder to a server or back.
namespace molven::migration {

/// A database file and where its copy goes.
struct Move {
    DataFile file;
    QString from, to;
};

/// What became of a table.
struct Moved {
    QString file, table;
    qint64 read = 0, stored = 0;
    QStringList differing = {}; ///< numbers whose sums are not the same on both sides

    bool isWhole() const { return read == stored && differing.isEmpty(); }
};

/// Every database file of a dossier but the work files and the list of dossiers, with those of its users' folders and
/// its second site, and their places below a folder: the folders keep their names, the second site's is "gv".
QList<Move> moves(const Session& session, const QString& base);
/// Copies the files, which must not be there yet, table by table with the records' keys. Nobody else writes to a
/// source on a server meanwhile. Throws DataError, and Refusal when it was stopped.
QList<Moved> copy(const QList<Move>& moves, const Progress& progress);

struct Outcome {
    Session session; ///< of the dossier made
    QList<Moved> tables;
};

/// Copies the dossier at a folder or an address (the one `name`d, when there are several) to an address, or into a new
/// installation in a folder; the source stays as it is. Whole or not at all. Throws Refusal where other workstations
/// work in the source's folder or the target holds a dossier already, DataError.
Outcome migrate(const QString& source, const QString& name, const QString& target, const Progress& progress);

} // namespace molven::migration

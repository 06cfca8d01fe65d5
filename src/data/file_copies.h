#pragma once

#include "data/progress.h"

#include <QList>
#include <QString>

/// Copies of database files on another disk.
namespace molven::file_copies {

struct Copy {
    QString from, to; ///< full paths
};

/// Copies the files as they are at one moment, through the engine's own online copy, checks every copy whole, and only
/// then gives all of them their names: a full disk, a cable pulled or a stop leave the copies that were there. A file
/// that is no database is copied as it is. Throws DataError, and Refusal for a target that cannot be written, a source
/// that is damaged, and a work that was stopped. Answers the bytes of each copy.
QList<qint64> make(const QList<Copy>& copies, const Progress& progress);

/// What is wrong with a database file, read whole; empty for a sound one, and for one of another kind.
QStringList faults(const QString& path, const Progress& progress = {});

/// Whether a file is one of the engine's, by its first bytes.
bool isDatabase(const QString& path);

} // namespace molven::file_copies

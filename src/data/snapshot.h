#pragma once

#include "data/errors.h"

#include <QHash>
#include <QStringList>
#include <QTemporaryDir>

#include <map>

namespace molven {

/// Private copies of database files, all as they were at one moment: no commit of another workstation falls between
/// two of them. Commits wait while the files are copied, not while the copies are read. They are gone with the
/// snapshot, and only this user can read them.
class Snapshot {
public:
    /// Copies the files named `name` that lie in these folders, in that order of files: the one in which the program
    /// writes them. `folders` tells where each folder's copy lies below folder(). Throws DataError when there is no
    /// room for the copies, or when other workstations never let go of the files.
    Snapshot(const QStringList& names, const QHash<QString, QString>& folders);

    /// Where the copies lie, without trailing separator.
    QString folder() const { return folder_.path(); }
    /// What kept a file from being copied; by path of the original.
    const std::map<QString, DataError>& faults() const { return faults_; }

private:
    bool take(const QStringList& names, const QHash<QString, QString>& folders);
    void copy(const QString& path, const QString& folder, const QString& name);

    QTemporaryDir folder_;
    std::map<QString, DataError> faults_;
};

} // namespace molven

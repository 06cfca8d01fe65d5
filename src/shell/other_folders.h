#pragma once

#include "data/database.h"
#include "shell/session.h"

#include <memory>
#include <vector>

namespace molven {

/// Sales documents and archives of the dossier's other users and of its second site, which share its units: to be read
/// only, each file by a connection of its own.
class OtherFolders {
public:
    /// Throws DataError when a file cannot be opened.
    explicit OtherFolders(const Session& session);

    const QList<Database>& files() const { return files_; }
    /// Those of them that hold archived units, too.
    const QList<Database>& archives() const { return archives_; }

private:
    std::vector<std::unique_ptr<Workspace>> connections_;
    QList<Database> files_, archives_;
};

} // namespace molven

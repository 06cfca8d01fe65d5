#pragma once

#include "data/catalogue.h"

#include <QStringList>

namespace molven {

/// Database files being made for a dossier: unless they are kept, those on a server are taken away again at the end;
/// those of a folder go with it.
class MadeFiles {
public:
    MadeFiles() = default;
    ~MadeFiles();
    MadeFiles(const MadeFiles&) = delete;
    MadeFiles& operator=(const MadeFiles&) = delete;

    /// Throws DataError for a file that is there already.
    void create(const QString& path, DataFile file);
    void keep() { paths_.clear(); }

private:
    QStringList paths_;
};

} // namespace molven

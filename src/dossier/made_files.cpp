#include "dossier/made_files.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/server_address.h"

namespace molven {

MadeFiles::~MadeFiles() {
    for (const QString& path : paths_) {
        try {
            Database::discard(path);
        } catch (const DataError&) { // the server is gone: whoever makes the dossier again is told what stands there
        }
    }
}

void MadeFiles::create(const QString& path, DataFile file) {
    Database::create(path, tablesOf(file));
    if (server_address::isOne(path)) paths_.append(path);
}

} // namespace molven

#include "dossier/exposure.h"

#include "data/file_rights.h"

namespace molven::exposure {

QStringList readableByAll(const Session& session) {
    QStringList names;
    for (const CatalogueEntry& entry : catalogue())
        if (isReadableByAll(session.path(entry.file))) names.append(entry.name);
    return names;
}

} // namespace molven::exposure

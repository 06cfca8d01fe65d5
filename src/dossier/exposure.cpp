#include "dossier/exposure.h"

#include "data/file_rights.h"

#include <QDir>

namespace molven::exposure {

QStringList readableByAll(const Session& session) {
    QStringList names;
    for (const CatalogueEntry& entry : catalogue())
        if (isReadableByAll(session.path(entry.file))) names.append(entry.name);
    const QDir letters(session.chemin_tri + QStringLiteral("rappel"));
    for (const QString& letter : letters.entryList({QStringLiteral("*.pdf")}, QDir::Files))
        if (isReadableByAll(letters.filePath(letter))) names.append(QStringLiteral("rappel/") + letter);
    return names;
}

} // namespace molven::exposure

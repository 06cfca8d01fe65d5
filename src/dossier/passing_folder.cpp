#include "dossier/passing_folder.h"

#include "data/catalogue.h"
#include "data/database.h"
#include "data/errors.h"
#include "data/server_address.h"
#include "shell/folder_files.h"

#include <QDir>
#include <QTemporaryDir>

#include <map>

namespace molven::passing_folder {

void make(const QString& folder, const QString& address) {
    const QDir place(folder);
    place.mkpath(QStringLiteral("tri"));
    for (const CatalogueEntry& entry : catalogue())
        if (entry.folder == Folder::Work)
            Database::create(place.filePath(QStringLiteral("tri/") + entry.name), tablesOf(entry.file));
    writeLine(place.filePath(QStringLiteral("CHEMIN.HC")), address);
    writeLine(place.filePath(QStringLiteral("CHEMIN_GV.HC")), server_address::folder(address) + QStringLiteral("gv/"));
    writeLine(place.filePath(QStringLiteral("TRI.HC")), QStringLiteral("tri\\"));
}

QString at(const QString& address) {
    static std::map<QString, QTemporaryDir> made;
    const bool isKnown = made.contains(address);
    const QTemporaryDir& folder = made[address];
    if (!folder.isValid()) throw Refusal(folder.errorString());
    if (!isKnown) make(folder.path(), address);
    return folder.path();
}

} // namespace molven::passing_folder

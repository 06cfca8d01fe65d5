#include "dossier/user_folders.h"

#include "data/catalogue.h"

#include <QDir>

namespace molven::user_folders {

QStringList below(const QString& dataFolder) {
    const QDir place(dataFolder);
    QStringList names = place.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    names.removeIf([&place](const QString& name) {
        const QStringList files = QDir(place.filePath(name)).entryList({QStringLiteral("*.mdb")}, QDir::Files);
        return name.startsWith(SetAside) ||
               !files.contains(catalogueEntry(DataFile::Vente).name, Qt::CaseInsensitive) ||
               files.contains(catalogueEntry(DataFile::Molven).name, Qt::CaseInsensitive);
    });
    return names;
}

} // namespace molven::user_folders

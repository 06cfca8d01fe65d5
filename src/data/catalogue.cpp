#include "data/catalogue.h"

#include "data/server_address.h"

#include <QFileInfo>

#include <algorithm>

namespace molven {

const QList<CatalogueEntry>& catalogue() {
    static const QList<CatalogueEntry> entries{
        {DataFile::Societe, QStringLiteral("societe.mdb"), Folder::Program},
        {DataFile::Molven, QStringLiteral("molven.mdb"), Folder::Base},
        {DataFile::Vente, QStringLiteral("vente.mdb"), Folder::Sales},
        {DataFile::Blent, QStringLiteral("blent.mdb"), Folder::User},
        {DataFile::Proforma, QStringLiteral("proforma.mdb"), Folder::User},
        {DataFile::Historic, QStringLiteral("historic.mdb"), Folder::Sales},
        {DataFile::Ostrane, QStringLiteral("ostrane.mdb"), Folder::Base},
        {DataFile::Ancillaire, QStringLiteral("ancillaire.mdb"), Folder::Base},
        {DataFile::Virtuel, QStringLiteral("virtuel.mdb"), Folder::Base},
        {DataFile::Compta, QStringLiteral("compta.mdb"), Folder::Base},
        {DataFile::Gencode, QStringLiteral("gencode.mdb"), Folder::Base},
        {DataFile::Mail, QStringLiteral("mail.mdb"), Folder::Base},
        {DataFile::Stocks, QStringLiteral("stocks.mdb"), Folder::Base},
        {DataFile::Tristk, QStringLiteral("tristk.mdb"), Folder::Base},
        {DataFile::Tri, QStringLiteral("tri.mdb"), Folder::Work},
        {DataFile::Tripro, QStringLiteral("tripro.mdb"), Folder::Work},
        {DataFile::Tridu, QStringLiteral("tridu.mdb"), Folder::Work},
        {DataFile::Documents, QStringLiteral("documents.mdb"), Folder::Work},
    };
    return entries;
}

const CatalogueEntry& catalogueEntry(DataFile file) {
    return *std::find_if(catalogue().begin(), catalogue().end(),
                         [file](const CatalogueEntry& entry) { return entry.file == file; });
}

std::optional<DataFile> dataFileAt(const QString& path) {
    const QString name =
        server_address::isOne(path) ? path.mid(server_address::folderOf(path).size()) : QFileInfo(path).fileName();
    for (const CatalogueEntry& entry : catalogue())
        if (entry.name.compare(name, Qt::CaseInsensitive) == 0) return entry.file;
    return std::nullopt;
}

} // namespace molven

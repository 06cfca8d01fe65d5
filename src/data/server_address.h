#pragma once

#include <QString>

/// Places on a database server. A dossier lies at an address, "postgresql://host/base" or "service=nom"; what stands
/// for a file's path is the address, "#" and the file behind the folders that it would lie in below the dossier's:
/// "postgresql://host/base#vente.mdb", "service=nom#AX/vente.mdb".
namespace molven::server_address {

/// Whether that is an address, or a place at one, and no folder.
bool isOne(const QString& place);
/// What stands for the folder: the address ends with "#", a place below it with a separator.
QString folder(const QString& address);
/// The folder() that a file lies in.
QString folderOf(const QString& path);
/// The address alone, as it is given to the server's library.
QString connection(const QString& place);
/// The schema that holds the tables of that file: "vente", "ax_vente".
QString schema(const QString& path);

} // namespace molven::server_address

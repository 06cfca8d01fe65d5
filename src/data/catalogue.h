#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace molven {

class Table;

/// The database files of an installation.
enum class DataFile {
    Societe,
    Molven,
    Vente,
    Blent,
    Proforma,
    Historic,
    Ostrane,
    Ancillaire,
    Virtuel,
    Compta,
    Gencode,
    Mail,
    Stocks,
    Tristk,
    Tri,
    Tripro,
    Tridu,
    Documents
};

/// Where a file lies.
enum class Folder {
    Program, ///< the program's own folder
    Base,    ///< shared data folder of the dossier
    User,    ///< the user's own folder, the data folder when there is none
    Sales,   ///< as User, but the second site's folder for the company's second site
    Work     ///< work folder
};

struct CatalogueEntry {
    DataFile file;
    QString name;
    Folder folder;
};

/// Every file with its name and folder rule.
const QList<CatalogueEntry>& catalogue();
const CatalogueEntry& catalogueEntry(DataFile file);
/// Which file bears this path's name; none for any other name.
std::optional<DataFile> dataFileAt(const QString& path);
/// The tables that a file holds. Defined in dossier/files.cpp, where every table is known.
const QList<const Table*>& tablesOf(DataFile file);

} // namespace molven

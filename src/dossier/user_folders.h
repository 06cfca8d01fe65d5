#pragma once

#include <QStringList>

/// Folders below a data folder where users keep documents of their own, beside the units of all.
namespace molven::user_folders {

/// Begins the name of a folder that keeps what a restoration replaced.
inline const QString SetAside = QStringLiteral("avant-restauration-");

/// Their names, in order. A folder with units of its own is a dossier, or a copy of one.
QStringList below(const QString& dataFolder);

} // namespace molven::user_folders

#pragma once

#include <QString>

namespace molven::passing_folder {

/// A program folder for a dossier that is named by its server's address alone: its folder files, and a work folder
/// with its files. It is gone when the program ends.
QString at(const QString& address);

/// Makes the same in an empty folder that stays.
void make(const QString& folder, const QString& address);

} // namespace molven::passing_folder

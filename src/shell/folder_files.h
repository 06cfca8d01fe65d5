#pragma once

#include <QString>

#include <optional>

namespace molven {

/// First line of a text file, trimmed; nothing when the file is missing. Throws Refusal when it cannot be read.
std::optional<QString> firstLine(const QString& path);

/// The folder that a folder file ("CHEMIN.HC", "TRI.HC", ...) names: "\" means "/" outside Windows, a missing
/// final separator is added, a relative path starts at the program folder.
std::optional<QString> folderFrom(const QString& programFolder, const QString& fileName);
/// A folder path as typed or stored, made usable the same way.
QString usableFolder(const QString& programFolder, const QString& typed);

/// Replaces a text file by one line ending in CR LF, whole or not at all. Throws Refusal when it cannot be written.
void writeLine(const QString& path, const QString& line);

} // namespace molven

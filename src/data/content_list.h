#pragma once

#include <QString>
#include <QStringList>

/// What a backup holds, written beside it: one line a file, its SHA-256 and its name, as `sha256sum -c` reads it.
namespace molven::content_list {

inline const QString Name = QStringLiteral("CONTENU.SHA256");

/// Lists files of a folder by their names in it. Throws Refusal when it cannot be written; then no list stands.
void write(const QString& folder, const QStringList& names);
/// Files of the list that are missing or other than they were, one line each; empty as well where there is no list.
QStringList faults(const QString& folder);

} // namespace molven::content_list

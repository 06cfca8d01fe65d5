#pragma once

#include "shell/session.h"

#include <functional>

namespace molven::attached_documents {

/// Result codes of opening a file, those of the Windows shell; above 32 it is open.
enum Result {
    FileNotFound = 2,
    PathNotFound = 3,
    AccessDenied = 5,
    SharingViolation = 26,
    NoAssociation = 31,
    Opened = 33
};

/// Text behind the last ".", empty when there is none.
QString extension(const QString& path);
/// True for a program that the user must agree to run: the lower-case "exe" alone.
bool isProgram(const QString& path);

/// Opens a file with the program of its type; answers the system's result code.
int open(const QString& path);
/// What is said of a result code; empty when nothing is.
QString message(int result);

/// Root of the documents folders, read from CHEMIN.CE where the company has one; empty otherwise.
QString root(const Session& session);
/// The files of a folder, by name in French order.
QStringList list(const QString& folder);
/// Copies a file into a folder, never over another. Throws Refusal.
void copyInto(const QString& folder, const QString& file);

} // namespace molven::attached_documents

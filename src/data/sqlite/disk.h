#pragma once

#include <QString>

namespace molven::sqlite {

/// Name of the disk that connections are opened on. It is the engine's own, except for journals:
/// - the paths in them are relative to where they lie (data/sqlite/journal_names.h);
/// - a journal bears the number of changes of the database file it was begun for, and is refused by another state of
///   that file, such as a backup copied over it;
/// - a journal is refused as well when the file that its commit stands beside cannot be found.
const char* disk();

/// Why the disk last refused a journal to this thread, in French; empty when it did not since this was asked.
QString takeObjection();

} // namespace molven::sqlite

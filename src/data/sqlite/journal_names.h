#pragma once

#include <QByteArray>
#include <QString>

namespace molven::sqlite {

/// A commit over several files stands on one file, the super-journal "molven.mdb-mj0123459AB": while it exists, the
/// journal of every file is rolled back; without it, they are all over. The engine writes its full path into the
/// journals. A path on disk is relative to the folder of the file that holds it instead, so that it is found by another
/// mount, by another drive letter, and in a folder that was renamed, moved or copied whole.

bool isSuperJournal(const QString& path);
/// The database file that a super-journal or a journal lies beside.
QString databaseOf(const QString& journal);

/// How a path stands in a file of this folder, and what such a text means there. A path on another drive stays whole.
QByteArray kept(const QString& folder, const QByteArray& path);
QByteArray resolved(const QString& folder, const QByteArray& text);

/// The end of a journal that names its super-journal: the name, its length, its sum, the engine's mark.
QByteArray ending(const QByteArray& name);
/// The name that a journal's last bytes end with; empty when they name none.
QByteArray namedBy(const QByteArray& lastBytes);
constexpr qsizetype EndingLength = 16; ///< of what follows the name

/// True while a journal that it commits still waits for it, or cannot be seen from here.
bool isAwaited(const QString& superJournal);
/// Removes the super-journals of a database file that nothing waits for: what killed commits left. The caller holds the
/// write lock of that file.
void sweepSuperJournals(const QString& database);

} // namespace molven::sqlite

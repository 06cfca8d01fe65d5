#pragma once

#include "data/progress.h"

#include <QStringList>

/// Database files rewritten without what deleted records left in them. The caller sees to it that nobody works in them.
namespace molven::compaction {

/// Writes the file anew as "new.mdb" of its folder, compares the two record by record, deletes the file, copies
/// "new.mdb" to its name and deletes "new.mdb": at every moment one of them is whole. Throws DataError, and Refusal
/// when another program writes the file, the copy differs, or the work is stopped; the file is as before then.
void compact(const QString& path, const Progress& progress);

/// Whether a compaction of this folder did not come to its end.
bool isUnfinished(const QString& folder);
/// The one of these files that is missing there and that its "new.mdb" stands for; empty when none is.
QString missing(const QString& folder, const QStringList& names);
/// Finishes it: gives "new.mdb" the name of the missing file, which is answered; removes it when none is missing.
/// Throws DataError and Refusal.
QString finish(const QString& folder, const QStringList& names);

} // namespace molven::compaction

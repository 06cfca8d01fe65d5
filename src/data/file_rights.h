#pragma once

#include <QString>

namespace molven {

/// Leaves a file or folder to its owner and its group. Throws Refusal.
void keepFromOthers(const QString& path);
/// The same for a folder and all that is in it.
void keepAllFromOthers(const QString& folder);

/// True when any user of the machine can reach and read a file. Always false where the system's rights are not told by
/// owner, group and others.
bool isReadableByAll(const QString& file);

} // namespace molven

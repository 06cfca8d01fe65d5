#pragma once

#include "shell/session.h"

namespace molven::bench {

/// The dossier of this run: a copy that the benches may write into.
const Session& session();

/// Unit whose history is asked for: delivered, in the midst of the file.
QString tracedUnit();

void registerRules();
void registerGrid();
void registerReference();

} // namespace molven::bench

#pragma once

#include "shell/session.h"

namespace molven::demo {

struct Options {
    int units = 5000;  ///< units received
    unsigned seed = 1; ///< the same seed on the same day gives the same dossier
};

/// What the journal calls it.
inline const QString Deed = QStringLiteral("Démonstration");

/// Fills an empty dossier with a plausible distributor, through the program's own rules.
void fill(const Session& session, const Options& options);

} // namespace molven::demo

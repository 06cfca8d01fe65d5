#pragma once

#include "data/progress.h"
#include "shell/session.h"

namespace molven::demo {

struct Options {
    int units = 5000;    ///< units received
    unsigned seed = 1;   ///< the same seed on the same day gives the same dossier
    QString server = {}; ///< address of the database that the dossier lies in, none for a folder
};

/// What the journal calls it.
inline const QString Deed = QStringLiteral("Démonstration");

/// Makes a new installation in a folder that holds none, filled with a plausible distributor through the program's own
/// rules. Whole or not at all, be it stopped. Throws Refusal. Answers the session of the dossier made.
Session create(const QString& folder, const QString& code, const Options& options, const Progress& progress = {});

} // namespace molven::demo

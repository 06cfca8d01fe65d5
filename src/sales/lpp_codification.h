#pragma once

#include "shell/session.h"

#include <QList>
#include <QString>

namespace molven::lpp_codification {

/// An article whose LPP code cannot be told from its TIPS code.
struct Fault {
    QString reference;
    QString label;
    QString tips;
    QString lpp; ///< "Inconnu" or "Multiple"
};

/// Derives the articles' LPP codes from their TIPS codes, then carries them into the units and into the lines of the
/// delivery notes not yet invoiced. All in one transaction.
QList<Fault> run(const Session& session);

} // namespace molven::lpp_codification

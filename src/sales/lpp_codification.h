#pragma once

#include "data/progress.h"
#include "shell/session.h"

#include <QList>
#include <QString>

#include <functional>

namespace molven::lpp_codification {

/// An article whose LPP code cannot be told from its TIPS code.
struct Fault {
    QString reference;
    QString label;
    QString tips;
    QString lpp; ///< "Inconnu" or "Multiple"
};

/// Derives the articles' LPP codes from their TIPS codes, then carries them into the units and into the lines of the
/// delivery notes not yet invoiced. All in one transaction. `step` is told the title of each step as it begins, and
/// answers who is told how far it is; stopped, nothing is changed and Refusal is thrown.
QList<Fault> run(const Session& session, const std::function<Progress(const QString& title)>& step);

} // namespace molven::lpp_codification

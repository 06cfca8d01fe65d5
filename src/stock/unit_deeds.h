#pragma once

#include <QString>

/// What the journal calls changes that are entered on a unit itself, and not by a document.
namespace molven::units {

inline const QString ImplantationDeed = QStringLiteral("Implantation");
inline const QString CorrectionDeed = QStringLiteral("Modification d'une unité");

} // namespace molven::units

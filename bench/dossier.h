#pragma once

#include "shell/session.h"

namespace molven::bench {

/// A dossier of that many units, made once and kept in `folder`: three units in ten were delivered, one delivery note
/// takes one unit, for "PATIENT " and the unit's rank. Five hundred units bear the same lot, "LOT0" on, and expire in
/// the same month, from "01/2027" on for five years. The benches write into a copy of it.
Session generate(const QString& folder, int units);

/// Client of every document, and the article of every unit received by the benches.
inline const QString Client = QStringLiteral("000001");
inline const QString Article = QStringLiteral("CFG001");
/// 50,000 further articles "A00000" on; the first 20,000 bear this LPP code.
inline const QString PushedLpp = QStringLiteral("3999000");

} // namespace molven::bench

#pragma once

#include "data/database.h"

#include <functional>
#include <optional>

/// Carries what the articles say now into their units that are not sold: label, TIPS and LPP code, approval number,
/// price and its basis. A delivered unit keeps the price and the LPP code of its note.
namespace molven::article_push {

/// Articles from one reference to another, both included; an empty bound is none.
struct Range {
    QString first, last;
};

/// Units of the range that are not sold. Throws Refusal "N° Fin < N° Début ???".
qint64 count(Database molven, const Range& range);

/// Told how many articles were carried; false stops, and nothing is written.
using Progress = std::function<bool(int done, int total)>;

/// One transaction. Answers how many units; nothing when it was stopped.
std::optional<qint64> run(Database molven, const Range& range, const Progress& progress);

} // namespace molven::article_push

#pragma once

#include "data/archive.h"

/// Sold units in the history file, and back.
namespace molven::unit_archive {

/// Units between two keys: the century and the immatriculation, ten characters.
struct Range {
    QString first, last;
};

archive::Subject subject();
/// Only units sold are moved, in both directions.
Criterion eligible();
/// Eligible units of a range. Throws Refusal for a key of another length.
Criterion within(const Range& range);

} // namespace molven::unit_archive

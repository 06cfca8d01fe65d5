#pragma once

#include "data/decimal.h"

namespace molven {

/// Writes a number by a pattern such as "#####0.00", "# ##0.00" or "000000": "0" always gives a digit, "#"
/// one when needed, a blank between them is kept while digits remain on its left. Rounds half away from zero.
/// The decimal mark is the French comma. Digits beyond the pattern are written before it, never lost.
QString format(const Decimal& value, const QString& pattern);

/// A numeric code left-padded with zeros: padded("12", 6) is "000012". A text that is not made of digits only,
/// or is empty, comes back trimmed and otherwise as it is.
QString padded(const QString& code, int width);

/// Lower case without accents: what a user's search compares.
QString folded(const QString& text);

/// The number as an input shows it: shortest form, with the comma.
QString shown(const Decimal& value);
/// An amount within a sentence: two decimals at least, with the comma.
QString amountText(const Decimal& value);
/// "0 unité", "1 unité", "2 unités": a regular French noun, given in the singular.
QString counted(qint64 count, const QString& noun);

} // namespace molven

#pragma once

#include "electronic/invoice.h"

namespace molven::electronic {

/// "Facture" or "Avoir".
QString typeWords(const Invoice& invoice);
/// A party in one line: name, town, numbers.
QString partyWords(const Party& party);
/// A line's attributes: "Lot L2, Péremption 04/2031".
QString attributeWords(const Line& line);
/// An invoice as people read it: who, what, totals; a line each.
QStringList words(const Invoice& invoice);

} // namespace molven::electronic

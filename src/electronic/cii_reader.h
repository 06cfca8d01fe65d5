#pragma once

#include "electronic/invoice.h"

#include <QByteArray>

namespace molven::electronic {

/// The invoice of a UN/CEFACT file of whichever profile; what the program has no place for is left out. Throws Refusal
/// for what is no such file.
Invoice invoiceOfCii(const QByteArray& xml);

} // namespace molven::electronic

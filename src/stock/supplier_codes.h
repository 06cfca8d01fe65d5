#pragma once

#include "data/database.h"
#include "stock/gs1.h"

namespace molven {

/// A supplier's GS1 code as the name of units: their article, and what else it says of them.
struct SupplierCode {
    QString reference;
    Gs1Code code;

    /// "CFG001, lot L1, péremption 06/2031".
    QString words() const;
    /// The condition on the units it fits, their article apart.
    Criterion fits() const;
};

namespace supplier_codes {

/// Throws Refusal, on `field`, for a code that cannot be read or an article that is not known.
SupplierCode read(Database molven, const QString& scanned, const QString& field);

} // namespace supplier_codes
} // namespace molven

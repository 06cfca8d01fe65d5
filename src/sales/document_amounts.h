#pragma once

#include "data/database.h"
#include "sales/document_kind.h"

namespace molven {

/// What the totals of a priced document are made of, to the cent; credit notes count below zero. What is left of the
/// lines, with carriage and exempt amount, is the header's `fac_ht`; the amounts of VAT are the rest up to `fac_ttc`.
struct DocumentAmounts {
    /// What is taxed under one code, with the carriage under its own, and its VAT.
    struct Vat {
        QString code;
        Decimal rate; ///< percent, as the code has it today
        Decimal base, amount;
        Decimal linesBase; ///< of the base, what the lines come to before any discount
    };
    QList<Vat> vat; ///< by code
    Decimal lines;  ///< without VAT
    /// Taken off the lines: the document's discount, then the one for settlement.
    Decimal discount, settlement;
    Decimal carriage, exempt;
};

/// Of a document whose lines lie in `file`.
DocumentAmounts amountsOf(Database molven, Database file, const DocumentKind& kind, const Record& header);

} // namespace molven

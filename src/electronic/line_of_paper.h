#pragma once

#include "electronic/invoice.h"
#include "electronic/parties_of_paper.h"
#include "sales/sales_book.h"

namespace molven::electronic {

/// The lines of an invoice as the norm has them: unit prices without VAT, amounts as the books hold them.
class LineMaker {
public:
    /// `sign` is -1 for a credit note.
    LineMaker(SalesBook& book, const Parties& parties, const Decimal& sign)
        : book_(book), parties_(parties), sign_(sign) {}

    /// What a line of text says; empty for a line of goods.
    static QStringList textOf(const Record& line);
    Line line(const Record& line) const;

private:
    void putPrice(Line& made, const Record& line) const;

    SalesBook& book_;
    const Parties& parties_;
    const Decimal sign_;
};

} // namespace molven::electronic

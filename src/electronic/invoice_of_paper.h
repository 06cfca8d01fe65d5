#pragma once

#include "electronic/invoice.h"
#include "sales/papers.h"

namespace molven::electronic {

/// Whether documents of a kind are invoices or credit notes, which alone have an electronic form.
bool hasElectronicForm(const DocumentKind& kind);

/// The invoice or credit note of a paper of the book, from the same reading as its page, with the page's amounts.
/// Throws Refusal for one that lacks what an electronic invoice must bear, naming the field to fill, or whose amounts
/// do not add up.
Invoice invoiceOf(SalesBook& book, const papers::Paper& paper, const PaperDocument& page);

} // namespace molven::electronic

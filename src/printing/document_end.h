#pragma once

#include "printing/document_page.h"

/// What stands under the last line of a document, kept together: VAT, totals, payment, texts, signatures.
namespace molven::document_page::end {

int height(PrintJob& job, const PaperDocument& document);
/// From `top`; the texts stand above `bottom`.
void print(PrintJob& job, const PaperDocument& document, int top, int bottom);

} // namespace molven::document_page::end

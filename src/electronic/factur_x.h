#pragma once

#include "data/progress.h"
#include "electronic/invoice.h"
#include "sales/papers.h"

namespace molven::electronic {

/// The invoice of a paper as the print screens show it. Throws Refusal, see invoice_of_paper.h.
Invoice invoiceOf(SalesBook& book, const papers::Paper& paper);

/// A Factur-X file: the pages of the paper as PDF/A-3 with its invoice embedded. Throws Refusal, see invoiceOf().
QByteArray facturX(SalesBook& book, const papers::Paper& paper);

/// Saves each paper as a Factur-X file of a folder, under the title of its page; answers how many. When one lacks
/// something nothing is saved: the refusal names it.
qsizetype saveFacturX(SalesBook& book, const QList<papers::Paper>& papers, const QString& folder, const Progress& told);

/// The invoice of a received file: a PDF with an invoice embedded, or its bare XML. Throws Refusal for a file that
/// cannot be read, or holds none.
Invoice readFile(const QString& path);

} // namespace molven::electronic

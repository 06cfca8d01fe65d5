#pragma once

#include "printing/report.h"
#include "sales/papers.h"

/// The lines of a range of invoices for one client, patient or article.
namespace molven::invoice_extract {

struct Enquiry {
    papers::Range range;
    QString patient;   ///< begins so
    QString reference; ///< of the article
};

/// The documents of the range that have such a line. Throws Refusal for a range that is none, when nothing narrows it,
/// and when nothing is found.
QList<papers::Paper> select(SalesBook& book, const Enquiry& enquiry);
/// Their lines as a list, a group a document, with its totals; on its head what was asked.
Report list(SalesBook& book, const QList<papers::Paper>& papers, const Enquiry& enquiry, const Progress& told = {});

} // namespace molven::invoice_extract

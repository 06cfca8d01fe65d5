#pragma once

#include "data/progress.h"
#include "printing/document_page.h"
#include "sales/sales_book.h"

#include <memory>

/// Sales documents on paper: which are asked for, and what stands on their pages.
namespace molven::papers {

/// The documents asked for, as typed. Empty numbers mean "000000" and "999999", an empty year or client all of them.
struct Range {
    QString year, first, last, client;
};

/// A document and where it lies: current or archived.
struct Paper {
    Database file;
    Record header;
    const DocumentKind* kind;
};

/// What the law has every French invoice say of late payment.
inline const QString RecoveryIndemnity =
    QStringLiteral("Indemnité forfaitaire pour frais de recouvrement en cas de retard de paiement : 40 €");

/// The documents of the series of the book's kind, both kinds that share it, by number. Throws Refusal for a range that
/// is none and when it holds no document.
QList<Paper> select(SalesBook& book, const Range& range);

/// How the pages of a print screen differ from the usual ones.
struct Style {
    bool supplierFirst = false;      ///< the supplier's reference and serial lead a line, ours stand under it
    bool showsSterilisation = false; ///< batch and date under each line
    bool hasBars = false;            ///< unit and reimbursement code in bars under each line
};

/// Of the pages of a print screen, by its name.
Style styleOf(const QString& printScreen);

/// Reads documents into the values of their pages; what several of them share is read once.
class Reader {
public:
    Reader(SalesBook& book, const Style& style);
    ~Reader();

    PaperDocument read(const Paper& paper);

private:
    struct Known;
    std::unique_ptr<Known> known_;
};

/// The documents as one job. Throws Refusal when its user stopped it.
PrintJob print(SalesBook& book, const QList<Paper>& papers, const Style& style, const QString& barcodeFamily,
               const Progress& told = {});

/// "Facture 2026-000123", of several "Factures 000120 à 000123".
QString title(const QList<Paper>& papers);

/// A delivery note goes without prices to a client whose notes come on one invoice (`clt_rbl`), unless it checks them
/// against a statement (`clt_edtr`).
bool showsPrices(const DocumentKind& kind, const Record& client);

} // namespace molven::papers

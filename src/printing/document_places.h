#pragma once

#include "printing/document_page.h"

/// The parts of a document's pages that its lines leave alone, and the measures that all parts share; twips.
namespace molven::document_page {

namespace places {

inline const QString Sans = QStringLiteral("Arial"), Narrow = QStringLiteral("Arial Narrow");
inline const QColor Line = QColor(120, 120, 120), Light = QColor(205, 205, 205), Band = QColor(232, 234, 238);
constexpr int Left = 480, Width = PrintJob::ShortSide - 2 * Left, Right = Left + Width;

} // namespace places

// Each answers the place below what it wrote.

/// Seller, kind, number and date, address in the window of the envelope, facts.
int writeHead(PrintJob& job, const PaperDocument& document);
/// The head of a further page.
int writeShortHead(PrintJob& job, const PaperDocument& document);
/// At the same place of every page.
void writePageNumber(PrintJob& job, int page, int pages);
/// Top of what the footer fills.
int footerTop(PrintJob& job, const PaperSeller& seller);
void writeFooter(PrintJob& job, const PaperSeller& seller);

} // namespace molven::document_page

#include "printing/document_places.h"

namespace molven::document_page {

using namespace places;

namespace {

constexpr int LogoWidth = 3400, LogoHeight = 1000, LineStep = 230;
constexpr int TitleLeft = 6000;
/// The window of a long envelope, the sheet folded in three: address from 50 mm below the edge of the paper.
constexpr int WindowTop = 2560, WindowLeft = TitleLeft, WindowWidth = Right - WindowLeft;
constexpr int FactColumns = 4, FactWidth = Width / FactColumns, FactGap = 120;
constexpr int FooterStep = 175, FooterPoints = 7;

void put(PrintJob& job, int x, int y, const QString& text) {
    job.setPosition(x, y);
    job.print(text);
}

int putLines(PrintJob& job, int x, int y, const QStringList& lines, int width) {
    for (const QString& line : lines) {
        job.setPosition(x, y);
        y += LineStep * job.print(line, width, LineStep);
    }
    return y;
}

int writeSeller(PrintJob& job, const PaperSeller& seller) {
    job.setPosition(Left, 0);
    int y = job.picture(seller.logo, LogoWidth, LogoHeight);
    if (y > 0) y += 80;
    job.setFont(Sans, 12, true);
    job.setPosition(Left, y);
    y += 290 * job.print(seller.name, TitleLeft - Left - 200, 290);
    job.setFont(Sans, 8);
    return putLines(job, Left, y, seller.lines, TitleLeft - Left - 200);
}

/// What the document is, at the top right.
int writeTitle(PrintJob& job, const PaperDocument& document) {
    job.setFont(Sans, 18, true);
    job.setPosition(TitleLeft, 300);
    int y = 300 + 420 * job.print(document.kind, WindowWidth, 420) + 60;
    job.setFont(Sans, 11);
    put(job, TitleLeft, y, QStringLiteral("N°"));
    put(job, TitleLeft + 1900, y, QStringLiteral("du"));
    job.setBold(true);
    put(job, TitleLeft + 380, y, document.number);
    put(job, TitleLeft + 2250, y, document.date);
    return y + 340;
}

int writeAddresses(PrintJob& job, const PaperDocument& document, int y) {
    job.setFont(Sans, 11);
    const int address = putLines(job, WindowLeft, y, document.address, WindowWidth);
    if (document.delivery.isEmpty()) return address;
    job.setFont(Sans, 8, true);
    put(job, Left, y, QStringLiteral("Livraison"));
    job.setFont(Sans, 9);
    return std::max(address, putLines(job, Left, y + LineStep, document.delivery, WindowLeft - Left - 300));
}

int writeFacts(PrintJob& job, const QList<PaperFact>& facts, int y) {
    int deepest = 0;
    for (qsizetype i = 0; i < facts.size(); ++i) {
        const int column = static_cast<int>(i % FactColumns);
        if (column == 0 && i > 0) y += 180 + deepest * 210 + 60, deepest = 0;
        const int x = Left + column * FactWidth;
        job.setFont(Narrow, 7);
        put(job, x, y, facts[i].caption);
        job.setFont(Sans, 9);
        job.setPosition(x, y + 170);
        deepest = std::max(deepest, job.print(facts[i].value, FactWidth - FactGap, 210));
    }
    return facts.isEmpty() ? y : y + 180 + deepest * 210 + 40;
}

QStringList footerLines(PrintJob& job, const PaperSeller& seller) {
    job.setFont(Narrow, FooterPoints);
    QStringList lines;
    for (const QString& text : seller.footer) lines += job.lines(text, Width);
    return lines;
}

} // namespace

int writeHead(PrintJob& job, const PaperDocument& document) {
    const int top = std::max({writeSeller(job, document.seller) + 200, writeTitle(job, document) + 120, WindowTop});
    int y = writeAddresses(job, document, top) + 260;
    job.setPosition(Left, y);
    job.bar(Width, 8, Light);
    y = writeFacts(job, document.facts, y + 80);
    if (document.message.isEmpty()) return y;
    job.setFont(Sans, 9, true);
    job.setPosition(Left, y + 40);
    return y + 40 + LineStep * job.print(document.message, Width, LineStep);
}

int writeShortHead(PrintJob& job, const PaperDocument& document) {
    job.setFont(Sans, 9, true);
    put(job, Left, 0, document.seller.name);
    put(job, TitleLeft, 300, document.kind);
    job.setFont(Sans, 9);
    put(job, Left, 300, document.address.value(0));
    const int after = TitleLeft + 2600;
    put(job, after, 300, document.number);
    put(job, after + 800, 300, document.date);
    return 660;
}

void writePageNumber(PrintJob& job, int page, int pages) {
    const QString text = QStringLiteral("Page %1 / %2").arg(page).arg(pages);
    job.setFont(Sans, 9);
    put(job, Right - job.textWidth(text), 0, text);
}

int footerTop(PrintJob& job, const PaperSeller& seller) {
    return job.height() - 60 - static_cast<int>(footerLines(job, seller).size()) * FooterStep;
}

void writeFooter(PrintJob& job, const PaperSeller& seller) {
    int y = footerTop(job, seller);
    job.setPosition(Left, y - 60);
    job.bar(Width, 8, Light);
    for (const QString& line : footerLines(job, seller)) {
        put(job, Left + (Width - job.textWidth(line)) / 2, y, line);
        y += FooterStep;
    }
}

} // namespace molven::document_page

#include "printing/document_end.h"

#include "printing/document_places.h"

namespace molven::document_page::end {

using namespace places;

namespace {

constexpr int AboveFooter = 140; ///< between the texts and the line over the footer
constexpr int Gap = 180, RowStep = 260, TotalsWidth = 4200, TotalsLeft = Right - TotalsWidth;
constexpr int StandingOut = 360; ///< height of the last total
constexpr int VatWidths[] = {900, 1100, 1600, 1500};
constexpr int PaymentStep = 230, TextStep = 180, TextPoints = 7;
constexpr int SignatureHeight = 1700, SignatureGap = 400;

void put(PrintJob& job, int x, int y, const QString& text, int right = 0) {
    job.setPosition(right > 0 ? right - job.textWidth(text) : x, y);
    job.print(text);
}

int totalsHeight(const PaperDocument& document) {
    const int plain = static_cast<int>(document.totals.size()) - 1;
    return plain < 0 ? 0 : plain * RowStep + StandingOut;
}

int vatHeight(const PaperDocument& document) {
    return document.vat.isEmpty() ? 0 : (static_cast<int>(document.vat.size()) + 1) * RowStep;
}

int paymentHeight(const PaperDocument& document) { return static_cast<int>(document.payment.size()) * PaymentStep; }

/// VAT and payment stand at the left, the totals beside them.
int figuresHeight(const PaperDocument& document) {
    const int payment = paymentHeight(document);
    return std::max(vatHeight(document) + (payment > 0 ? payment + Gap : 0), totalsHeight(document));
}

int textsHeight(PrintJob& job, const PaperDocument& document) {
    job.setFont(Narrow, TextPoints);
    int height = 0;
    for (const QString& text : document.texts) height += static_cast<int>(job.lines(text, Width).size()) * TextStep;
    return height;
}

void printTotals(PrintJob& job, const PaperDocument& document, int y) {
    for (qsizetype i = 0; i < document.totals.size(); ++i) {
        const PaperFact& total = document.totals[i];
        const bool standsOut = i + 1 == document.totals.size();
        job.setPosition(TotalsLeft, y);
        if (standsOut) job.bar(TotalsWidth, StandingOut, Band);
        job.setFont(Sans, standsOut ? 11 : 9, standsOut);
        const int top = y + (standsOut ? 60 : 20);
        put(job, TotalsLeft + 80, top, total.caption);
        put(job, 0, top, total.value, Right - 80);
        y += RowStep;
    }
}

void printVat(PrintJob& job, const PaperDocument& document, int y) {
    if (document.vat.isEmpty()) return;
    QList<QStringList> rows{
        {QStringLiteral("TVA"), QStringLiteral("Taux"), QStringLiteral("Base HT"), QStringLiteral("Montant TVA")}};
    rows += document.vat;
    for (qsizetype row = 0; row < rows.size(); ++row) {
        job.setFont(Narrow, 9, row == 0);
        int x = Left;
        for (int column = 0; column < 4; ++column) {
            put(job, x, y + 20, rows[row].value(column), column == 0 ? 0 : x + VatWidths[column]);
            x += VatWidths[column];
        }
        y += RowStep;
        job.setPosition(Left, y - 20);
        job.bar(x - Left, 8, Light);
    }
}

void printPayment(PrintJob& job, const PaperDocument& document, int y) {
    for (const PaperFact& fact : document.payment) {
        job.setFont(Narrow, 9);
        put(job, Left, y, fact.caption);
        job.setBold(true);
        put(job, Left + 1500, y, fact.value);
        y += PaymentStep;
    }
}

void printSignatures(PrintJob& job, const PaperDocument& document, int y) {
    const int parties = static_cast<int>(document.signatures.size());
    if (parties == 0) return;
    const int width = (Width - (parties - 1) * SignatureGap) / parties;
    for (int i = 0; i < parties; ++i) {
        const int x = Left + i * (width + SignatureGap);
        job.setFont(Narrow, 9, true);
        put(job, x, y, document.signatures[i]);
        job.setFont(Narrow, 8);
        put(job, x, y + 240, QStringLiteral("Nom, date et signature :"));
        job.setPosition(x, y + SignatureHeight - 200);
        job.bar(width, 8, Line);
    }
}

} // namespace

int height(PrintJob& job, const PaperDocument& document) {
    const int texts = textsHeight(job, document);
    return Gap + figuresHeight(document) + (document.signatures.isEmpty() ? 0 : Gap + SignatureHeight) +
           (texts > 0 ? Gap + texts + AboveFooter : 0);
}

void print(PrintJob& job, const PaperDocument& document, int top, int bottom) {
    const int y = top + Gap;
    printTotals(job, document, y);
    printVat(job, document, y);
    printPayment(job, document, y + vatHeight(document) + (document.vat.isEmpty() ? 0 : Gap));
    printSignatures(job, document, y + figuresHeight(document) + Gap);
    const int under = y + height(job, document) - Gap - AboveFooter - textsHeight(job, document);
    int textTop = std::max(bottom - AboveFooter - textsHeight(job, document), under);
    job.setFont(Narrow, TextPoints);
    for (const QString& text : document.texts) {
        job.setPosition(Left, textTop);
        textTop += TextStep * job.print(text, Width, TextStep);
    }
}

} // namespace molven::document_page::end

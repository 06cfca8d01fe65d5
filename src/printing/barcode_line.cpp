#include "printing/barcode_line.h"

#include "printing/barcode_bars.h"
#include "printing/barcode_font.h"
#include "printing/code128.h"

namespace molven::barcode_line {

namespace {

constexpr int Module = 20; ///< twips

void drawBars(PrintJob& job, int x, int y, QString code) {
    bool isBar = true;
    for (const int width : barcode_bars::widths(EncodeCode128(code, Code128Encoder::Bars))) {
        job.setPosition(x, y);
        if (isBar) job.bar(width * Module, Height);
        x += width * Module;
        isBar = !isBar;
    }
}

} // namespace

void print(PrintJob& job, int x, int y, const QString& code, const QString& family) {
    if (family == BarcodeFont::Drawn) return drawBars(job, x, y, code);
    job.setFont(family, 12);
    job.setPosition(x, y);
    QString data = code;
    // The line printed is the readable form of the code: the font draws the bars itself.
    job.print(EncodeCode128(data, Code128Encoder::HumanReadable));
}

} // namespace molven::barcode_line

#include "printing/label_page.h"

#include "data/format.h"
#include "printing/barcode_bars.h"
#include "printing/barcode_font.h"
#include "printing/code128.h"

namespace molven::label_page {

namespace {

const QString Narrow = QStringLiteral("Arial Narrow");

/// Prints a label line by line; places are twips, as measured on the label stock in use.
class LabelWriter {
public:
    LabelWriter(PrintJob& job, int left, int top, const QString& barcodeFamily)
        : job_(job), left_(left), y_(top), barcodeFamily_(barcodeFamily) {}

    void write(const ProductLabel& label) {
        if (label.tips.isEmpty() && !label.lpp.isEmpty()) {
            barcode(label.lpp, label.lppLabel);
            for (const QString& code : label.furtherLpp) further(code);
        }
        if (!label.tips.isEmpty()) {
            job_.setFont(Narrow, 7);
            centred(QStringLiteral("Code T.I.P.S. : ") + label.tips, 1000);
        }
        y_ += 200;
        job_.setFont(Narrow, 12);
        centred(QStringLiteral("Référence : ") + label.reference, 500);
        y_ += 400;
        job_.setBold(true);
        centred(QStringLiteral("Immatriculation : ") + label.immatriculation, 500);
        job_.setFont(Narrow, 7);
        y_ += 400;
        centred(label.origin, 1000);
        y_ += 200;
        liability(label.liabilityTariff);
        y_ += 200;
        const QString price = label.euros ? format(*label.euros, QStringLiteral("###0.00")) : QString();
        centred(QStringLiteral("Prix de Vente TTC(Tva 5.5%) :   ") + price + QStringLiteral(" €"), 1000);
    }

private:
    void centred(const QString& text, int offset) {
        job_.setPosition(left_ + (4350 - job_.textWidth(text)) / 3 + offset, y_);
        job_.print(text);
    }

    void drawBars(const QString& code) {
        QString data = code;
        int x = left_ + 2100;
        bool isBar = true;
        for (const int width : barcode_bars::widths(EncodeCode128(data, Code128Encoder::Bars))) {
            job_.setPosition(x, y_);
            if (isBar) job_.bar(width * Module, BarHeight);
            x += width * Module;
            isBar = !isBar;
        }
    }

    void printCode(const QString& code) {
        job_.setFont(barcodeFamily_, 12);
        job_.setPosition(left_ + 2100, y_);
        QString data = code;
        job_.print(EncodeCode128(data, Code128Encoder::HumanReadable));
    }

    /// The line printed in the barcode font is the readable form of the code: the font draws the bars itself.
    void barcode(const QString& code, const QString& caption) {
        if (barcodeFamily_ == BarcodeFont::Drawn)
            drawBars(code);
        else
            printCode(code);
        job_.setFont(Narrow, 7);
        y_ += 500;
        const QStringList lines = captionLines(caption);
        for (int i = 0; i < lines.size(); ++i) {
            if (i > 0) y_ += 200;
            centred(lines[i], 1000);
        }
    }

    /// A code without bars, on two lines at most: the label has room for one set of bars.
    void further(const QString& code) {
        const QStringList lines = captionLines(QStringLiteral("LPP : ") + code);
        for (const QString& line : lines.mid(0, 2)) {
            y_ += 200;
            centred(line, 1000);
        }
    }

    void liability(const QString& tariff) {
        const QString caption = QStringLiteral("Tarif de Responsabilité :   ");
        if (tariff.endsWith(u"EUR")) {
            centred(caption + tariff.chopped(std::min<qsizetype>(4, tariff.size())) + QStringLiteral(" €"), 1000);
            return;
        }
        centred(caption, 1000);
        y_ += 200;
        centred(tariff, 1000);
    }

    static constexpr int Module = 20, BarHeight = 440; // twips

    PrintJob& job_;
    const int left_;
    int y_;
    QString barcodeFamily_;
};

} // namespace

QStringList captionLines(const QString& caption) {
    QStringList lines;
    QString rest = caption.trimmed();
    while (rest.size() >= 41) {
        const qsizetype blank = rest.lastIndexOf(u' ', 39);
        const qsizetype cut = blank > 0 ? blank : 40;
        lines.append(rest.left(cut).trimmed());
        rest = rest.mid(cut).trimmed();
    }
    if (!rest.isEmpty()) lines.append(rest);
    return lines;
}

void print(PrintJob& job, const QList<ProductLabel>& labels, const QString& barcodeFamily, Paper paper) {
    const int columns = paper == Paper::Sheet ? 2 : 1;
    const int perPage = LabelsPerPage * columns;
    for (int i = 0; i < labels.size(); ++i) {
        if (i > 0 && i % perPage == 0) job.newPage();
        const int column = i % perPage / LabelsPerPage, row = i % LabelsPerPage;
        LabelWriter(job, column * ColumnStep, row * LabelStep, barcodeFamily).write(labels[i]);
    }
}

} // namespace molven::label_page

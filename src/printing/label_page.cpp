#include "printing/label_page.h"

#include "data/format.h"
#include "printing/barcode_line.h"

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

    void barcode(const QString& code, const QString& caption) {
        barcode_line::print(job_, left_ + 2100, y_, code, barcodeFamily_);
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

#include "printing/label_page.h"

#include "data/format.h"
#include "printing/code128.h"

namespace molven::label_page {

namespace {

const QString Narrow = QStringLiteral("Arial Narrow");

/// Prints a label line by line; places are twips, as measured on the label stock in use.
class LabelWriter {
public:
    LabelWriter(PrintJob& job, int top, const QString& barcodeFamily)
        : job_(job), y_(top), barcodeFamily_(barcodeFamily) {}

    void write(const ProductLabel& label) {
        if (label.tips.isEmpty() && !label.lpp.isEmpty()) barcode(label.lpp, label.lppLabel);
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
        job_.setPosition((4350 - job_.textWidth(text)) / 3 + offset, y_);
        job_.print(text);
    }

    /// The line printed in the barcode font is the readable form of the code: the font draws the bars itself.
    void barcode(const QString& code, const QString& caption) {
        job_.setFont(barcodeFamily_, 12);
        job_.setPosition(2100, y_);
        QString data = code;
        job_.print(EncodeCode128(data, Code128Encoder::HumanReadable));
        job_.setFont(Narrow, 7);
        y_ += 500;
        const QStringList lines = captionLines(caption);
        for (int i = 0; i < lines.size(); ++i) {
            if (i > 0) y_ += 200;
            centred(lines[i], 1000);
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

void print(PrintJob& job, const QList<ProductLabel>& labels, const QString& barcodeFamily) {
    for (qsizetype i = 0; i < labels.size(); ++i) {
        if (i > 0 && i % LabelsPerPage == 0) job.newPage();
        const int top = static_cast<int>(i % LabelsPerPage) * LabelStep;
        LabelWriter(job, top, barcodeFamily).write(labels[i]);
    }
}

} // namespace molven::label_page

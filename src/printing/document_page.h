#pragma once

#include "data/decimal.h"
#include "printing/print_job.h"

namespace molven {

/// Who issues a document: the same on every one of a job.
struct PaperSeller {
    QString name;
    QStringList lines;  ///< address, telephone and the like, under the name
    QImage logo;        ///< none when null
    QStringList footer; ///< at the foot of every page
};

/// A value and what it is.
struct PaperFact {
    QString caption, value;
};

/// A column of a document's lines. Widths are twips; the one column of width 0 takes the rest, and bears what stands
/// under its line.
struct DocumentColumn {
    QString title;
    int width = 0;
    bool isNumber = false; ///< right-aligned
};

/// One line of a document: kept together on one page.
struct DocumentLine {
    QString group = {};     ///< a change of it heads the line in bold, and the first one of the next page; may be empty
    QStringList cells;      ///< by column
    QStringList under = {}; ///< under the designation, each on a line of its own
    QStringList details = {};   ///< then one behind the other
    QList<PaperFact> bars = {}; ///< codes in bars under the line, by what they are; an empty one leaves its place free
    Decimal carried = {};       ///< what it adds to the sum carried from page to page
};

/// One document as people hold it in their hands; every value as it is printed.
struct PaperDocument {
    PaperSeller seller;
    QString kind;              ///< "Facture"
    QString number;            ///< "000123"
    QString date;              ///< "dd/mm/yyyy"
    QStringList address;       ///< whom it is sent to, the name first
    QStringList delivery = {}; ///< where the goods go; empty when that is the same
    QList<PaperFact> facts;    ///< order, patient, transport ...
    QString message = {};

    QList<DocumentColumn> columns;
    QList<DocumentLine> lines;
    int carriedColumn = -1;      ///< where the carried sum stands
    QString carriedPattern;      ///< how it is written
    QList<PaperFact> totals;     ///< the last one stands out
    QList<QStringList> vat = {}; ///< VAT table: code, rate, base, amount; empty for none
    QList<PaperFact> payment = {};
    QStringList texts = {};      ///< under all, small
    QStringList signatures = {}; ///< parties that sign
};

namespace document_page {

/// What is wanted of every document of a job.
struct Style {
    QString barcodeFamily = {}; ///< a font, or BarcodeFont::Drawn; for the codes under the lines
};

/// Prints the document on pages of its own behind what the job holds already; its pages are counted for themselves.
void print(PrintJob& job, const PaperDocument& document, const Style& style);

} // namespace document_page
} // namespace molven

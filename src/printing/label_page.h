#pragma once

#include "data/decimal.h"
#include "printing/print_job.h"

#include <optional>

namespace molven {

/// What one product label shows, ready to print.
struct ProductLabel {
    QString immatriculation;
    QString reference;
    QString tips; ///< TIPS code; when empty the LPP code is printed with its bars
    QString lpp, lppLabel;
    QString origin;
    QString liabilityTariff;      ///< "123,45 EUR", or words
    std::optional<Decimal> euros; ///< sale price with VAT
    QStringList furtherLpp = {};  ///< codes of the article beside `lpp`, each with its label
};

namespace label_page {

constexpr int LabelStep = 3470; ///< twips from one label's top to the next one's
constexpr int LabelsPerPage = 4;

constexpr int ColumnStep = 5650; ///< twips from one column of an A4 sheet to the next

enum class Paper {
    Column, ///< one label below the other
    Sheet   ///< A4 sheet of two columns
};

/// Prints the labels in order, down each column, starting a page when the paper is full. `barcodeFamily` is a font, or
/// BarcodeFont::Drawn for real bars.
void print(PrintJob& job, const QList<ProductLabel>& labels, const QString& barcodeFamily, Paper paper = Paper::Column);

/// Breaks a caption of 41 characters or more at the last blank before the 41st, again and again.
QStringList captionLines(const QString& caption);

} // namespace label_page
} // namespace molven

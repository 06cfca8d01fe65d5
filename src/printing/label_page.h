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
};

namespace label_page {

constexpr int LabelStep = 3470; ///< twips from one label's top to the next one's
constexpr int LabelsPerPage = 4;

/// Prints the labels, one below the other, starting a page when the paper is full.
void print(PrintJob& job, const QList<ProductLabel>& labels, const QString& barcodeFamily);

/// Breaks a caption of 41 characters or more at the last blank before the 41st, again and again.
QStringList captionLines(const QString& caption);

} // namespace label_page
} // namespace molven

#pragma once

#include <QDate>
#include <QString>

namespace molven {

/// What a supplier's barcode says of a unit (GS1 General Specifications: application identifiers).
struct Gs1Code {
    QString gtin;              ///< (01), 14 digits
    QString lot;               ///< (10)
    QDate production;          ///< (11)
    QDate expiry;              ///< (17); the last of the month when the day is 00
    QString serial;            ///< (21)
    QString supplierReference; ///< (240)

    /// The EAN-13 of the article, empty when the code has no GTIN or one of a case.
    QString ean() const { return gtin.startsWith(u'0') ? gtin.mid(1) : QString(); }
};

namespace gs1 {

/// True for a text that a scanner made of such a code: a symbology prefix ("]d2", "]C1", ...), an FNC1, an identifier
/// in brackets, or a GTIN of 14 digits behind 01.
bool isScan(const QString& text);

/// Reads DataMatrix and Code 128 strings. Variable fields end at FNC1 (sent as GS) or at the end. `today` gives the
/// century of two-digit years. Throws Refusal, in French, on `field`, for an unknown identifier, a short value, a wrong
/// check digit or date.
Gs1Code parse(const QString& text, const QDate& today, const QString& field = {});

} // namespace gs1
} // namespace molven

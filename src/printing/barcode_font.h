#pragma once

#include <QString>

namespace molven {

/// The font of the barcode lines.
struct BarcodeFont {
    QString family;  ///< to print with
    QString missing; ///< the family wanted but not installed, empty when it is there

    /// Stands for bars drawn by the program itself, without a font.
    inline static const QString Drawn = QStringLiteral("DESSIN");

    /// The family wanted is `named`, or "Code128M" when that is empty. A fixed-width font stands in for a missing one.
    static BarcodeFont choose(const QString& named);
};

} // namespace molven

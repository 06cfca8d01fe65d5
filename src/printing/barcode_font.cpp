#include "printing/barcode_font.h"

#include <QFontDatabase>

namespace molven {

BarcodeFont BarcodeFont::choose(const QString& named) {
    if (named.trimmed() == Drawn) return {Drawn, {}};
    const QString wanted = named.trimmed().isEmpty() ? QStringLiteral("Code128M") : named.trimmed();
    if (QFontDatabase::families().contains(wanted, Qt::CaseInsensitive)) return {wanted, {}};
    return {QStringLiteral("Courier New"), wanted};
}

} // namespace molven

#include "stock/supplier_codes.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "reference/articles.h"
#include "stock/unit_tables.h"

namespace molven {

QString SupplierCode::words() const {
    QString words = reference;
    if (!code.serial.isEmpty()) words += QStringLiteral(", série ") + code.serial;
    if (!code.lot.isEmpty()) words += QStringLiteral(", lot ") + code.lot;
    if (code.expiry.isValid()) words += QStringLiteral(", péremption ") + monthText(code.expiry);
    return words;
}

Criterion SupplierCode::fits() const {
    Criterion named;
    if (!code.serial.isEmpty()) named = named && strproduit.fou_imm == code.serial;
    if (!code.lot.isEmpty()) named = named && strproduit.lot_art == code.lot;
    if (code.expiry.isValid()) named = named && strproduit.dat_per == monthText(code.expiry);
    return named;
}

SupplierCode supplier_codes::read(Database molven, const QString& scanned, const QString& field) {
    const Gs1Code code = gs1::parse(scanned, Clock::today(), field);
    const auto article = articles::findScanned(molven, code.ean(), code.supplierReference);
    if (!article)
        throw Refusal(QStringLiteral("Référence inconnue : ") +
                          (code.gtin.isEmpty() ? code.supplierReference : code.gtin),
                      field);
    return {article->value(strarticle.art_ref), code};
}

} // namespace molven

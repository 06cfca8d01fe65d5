#include "sales/scanned_units.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "reference/articles.h"
#include "sales/unit_rules.h"
#include "stock/gs1.h"
#include "stock/unit_tables.h"

namespace molven::scanned_units {

namespace {

constexpr qint64 MostNamed = 4; ///< units cited in a refusal

[[noreturn]] void refuse(const QString& why) { throw Refusal(why, strlivl.fac_imm.name); }

/// What a supplier's code says of the unit, in words.
QString wordsOf(const Gs1Code& code, const QString& reference) {
    QString words = reference;
    if (!code.serial.isEmpty()) words += QStringLiteral(", série ") + code.serial;
    if (!code.lot.isEmpty()) words += QStringLiteral(", lot ") + code.lot;
    if (code.expiry.isValid()) words += QStringLiteral(", péremption ") + monthText(code.expiry);
    return words;
}

QString referenceOf(SalesBook& book, const Gs1Code& code) {
    const auto article = articles::findScanned(book.molven, code.ean(), code.supplierReference);
    if (article) return article->value(strarticle.art_ref);
    refuse(QStringLiteral("Référence inconnue : ") + (code.gtin.isEmpty() ? code.supplierReference : code.gtin));
}

/// The only unit of a selection that the document may take. One that it may not is checked all the same: the refusal
/// then says why.
Record only(SalesBook& book, const Record& header, const QString& reference, const Criterion& named,
            const QString& words) {
    const Criterion free = unit_rules::available(book, header, reference) && named;
    const Recordset takeable = book.molven.select(strproduit, free, {strproduit.pro_ann, strproduit.imm_art});
    if (takeable.count() > 1) {
        QStringList numbers;
        for (qint64 i = 0; i < std::min(takeable.count(), MostNamed); ++i)
            numbers.append(takeable.at(i)[strproduit.imm_art]);
        if (takeable.count() > MostNamed) numbers.append(QStringLiteral("..."));
        refuse(QStringLiteral("Plusieurs produits ont ce code (%1) : lisez l'étiquette du produit")
                   .arg(numbers.join(QStringLiteral(", "))));
    }
    const auto any = takeable.isEmpty() ? book.molven.find(strproduit, strproduit.ref_art == reference && named,
                                                           Order::descending(strproduit.imm_art))
                                        : std::optional<Record>(takeable.at(0));
    if (!any) refuse(QStringLiteral("Aucun produit en stock ne porte ce code : ") + words);
    return unit_rules::check(book, header, any->value(strproduit.imm_art));
}

Record ofSupplierCode(SalesBook& book, const Record& header, const QString& scanned) {
    const Gs1Code code = gs1::parse(scanned, Clock::today(), strlivl.fac_imm.name);
    const QString reference = referenceOf(book, code);
    Criterion named;
    if (!code.serial.isEmpty()) named = named && strproduit.fou_imm == code.serial;
    if (!code.lot.isEmpty()) named = named && strproduit.lot_art == code.lot;
    if (code.expiry.isValid()) named = named && strproduit.dat_per == monthText(code.expiry);
    return only(book, header, reference, named, wordsOf(code, reference));
}

} // namespace

Record find(SalesBook& book, const Record& header, const QString& scanned) {
    const QString text = scanned.trimmed();
    if (gs1::isScan(text)) return ofSupplierCode(book, header, text);
    // A label may bear the supplier's serial instead of our number.
    const Criterion bySerial = strproduit.fou_imm == text;
    const auto bearer = book.molven.find(strproduit, bySerial);
    const bool isNumber = Immatriculation::fromText(text).isValid() &&
                          book.molven.find(strproduit, Immatriculation::fromText(text).criterion());
    if (isNumber || !bearer) return unit_rules::check(book, header, text);
    const QString reference = bearer->value(strproduit.ref_art);
    return only(book, header, reference, bySerial, reference + QStringLiteral(", série ") + text);
}

} // namespace molven::scanned_units

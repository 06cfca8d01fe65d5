#include "sales/scanned_units.h"

#include "data/errors.h"
#include "sales/unit_rules.h"
#include "stock/supplier_codes.h"
#include "stock/unit_tables.h"

namespace molven::scanned_units {

namespace {

constexpr qint64 MostNamed = 4; ///< units cited in a refusal

[[noreturn]] void refuse(const QString& why) { throw Refusal(why, strlivl.fac_imm.name); }

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
    const SupplierCode code = supplier_codes::read(book.molven, scanned, strlivl.fac_imm.name);
    return only(book, header, code.reference, code.fits(), code.words());
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

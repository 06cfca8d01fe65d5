#pragma once

#include "sales/sales_book.h"

#include <QMap>

namespace molven::totals {

/// Computes a document's totals from its lines and footer and puts them in the header record: lines summed by
/// VAT code, less the document discount, less the settlement discount, plus carriage with its VAT at the
/// normal rate, plus the exempt amount; `fac_ffa` is what remains after the down payment. Each VAT amount is
/// rounded to the cent once. A document without footer amounts totals exactly its lines.
void compute(SalesBook& book, Record& header);

/// What a document's lines of one VAT code come to.
struct VatBase {
    Decimal ht;
    Decimal vat;
};
QMap<QString, VatBase> basesOf(Database file, const DocumentHeaders& headers, const DocumentLines& lines,
                               const Record& header);
/// As compute(), from the lines' sums by VAT code and the VAT of the carriage.
void put(const DocumentHeaders& table, Record& header, const QMap<QString, VatBase>& bases, const Decimal& carriageVat);
/// The fields of a header that compute() fills.
QList<const Number*> fields(const DocumentHeaders& table);

/// The VAT of the codes that have no field of their own, so that the footer adds up.
Decimal otherVat(const DocumentHeaders& table, const Record& header);

/// VAT code of carriage: the normal rate.
inline const QString CarriageVat = QStringLiteral("2");

} // namespace molven::totals

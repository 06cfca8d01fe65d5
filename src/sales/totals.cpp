#include "sales/totals.h"

#include "reference/parameters.h"
#include "sales/numbering.h"

namespace molven::totals {

QMap<QString, VatBase> basesOf(Database file, const DocumentHeaders& headers, const DocumentLines& lines,
                               const Record& header) {
    const Criterion shown = numbering::linesOf(lines, header[headers.fac_aa], header[headers.fac_no]);
    QMap<QString, VatBase> bases;
    for (const Summary& ofCode : file.summary(lines, {&lines.fac_tva}, {&lines.fac_ht, &lines.fac_ttc}, shown)) {
        const Decimal ht = ofCode.sums[0].rounded(2);
        bases.insert(ofCode.group.first(), {ht, ofCode.sums[1].rounded(2) - ht});
    }
    return bases;
}

void put(const DocumentHeaders& table, Record& header, const QMap<QString, VatBase>& bases,
         const Decimal& carriageVat) {
    const Record& read = header;
    const Decimal hundred = 100;
    const Decimal kept = (hundred - read[table.fac_rem]) / hundred * (hundred - read[table.fac_esc]) / hundred;
    Decimal ht, vatTotal;
    QMap<QString, Decimal> vat;
    for (auto base = bases.begin(); base != bases.end(); ++base) {
        ht += (base->ht * kept).rounded(2);
        vat[base.key()] = (base->vat * kept).rounded(2);
        vatTotal += vat[base.key()];
    }
    header[table.fac_tv1] = vat.value(QStringLiteral("1"));
    header[table.fac_tv2] = vat.value(QStringLiteral("2"));
    header[table.fac_tv3] = vat.value(QStringLiteral("3"));
    header[table.fac_tvp] = carriageVat;
    header[table.fac_ht] = ht + read[table.fac_port] + read[table.fac_exo];
    header[table.fac_ttc] = read[table.fac_ht] + vatTotal + carriageVat;
    header[table.fac_ffa] = read[table.fac_ttc] - read[table.fac_acpt];
}

void compute(SalesBook& book, Record& header) {
    const Record& read = header;
    const Decimal carriage = read[book.kind().headers.fac_port];
    const Decimal carriageVat =
        carriage.isZero() ? Decimal() : (carriage * parameters::vatRate(book.molven, CarriageVat) / 100).rounded(2);
    put(book.kind().headers, header, basesOf(book.vente, book.kind().headers, book.kind().lines, header), carriageVat);
}

QList<const Number*> fields(const DocumentHeaders& table) {
    return {&table.fac_ht,  &table.fac_ttc, &table.fac_tv1, &table.fac_tv2,
            &table.fac_tv3, &table.fac_tvp, &table.fac_ffa};
}

Decimal otherVat(const DocumentHeaders& table, const Record& header) {
    Decimal left = header[table.fac_ttc] - header[table.fac_ht];
    for (const Number* shown : {&table.fac_tv1, &table.fac_tv2, &table.fac_tv3, &table.fac_tvp}) left -= header[*shown];
    return left;
}

} // namespace molven::totals

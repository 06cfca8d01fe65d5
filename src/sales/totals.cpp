#include "sales/totals.h"

#include "reference/parameters.h"
#include "sales/numbering.h"

namespace molven::totals {

namespace {

struct VatBase {
    Decimal ht;
    Decimal vat;
};

QMap<QString, VatBase> basesOf(SalesBook& book, const Record& header) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    const Criterion lines = numbering::linesOf(table, header[headers.fac_aa], header[headers.fac_no]);
    QMap<QString, VatBase> bases;
    const QStringList codes = book.vente.countBy(table, table.fac_tva, lines).keys();
    for (const QString& code : codes) {
        const Criterion ofCode = lines && table.fac_tva == code;
        const Decimal ht = book.vente.sum(table, table.fac_ht, ofCode).rounded(2);
        bases.insert(code, {ht, book.vente.sum(table, table.fac_ttc, ofCode).rounded(2) - ht});
    }
    return bases;
}

} // namespace

void compute(SalesBook& book, Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    const Record& read = header;
    const Decimal hundred = 100;
    const Decimal kept = (hundred - read[table.fac_rem]) / hundred * (hundred - read[table.fac_esc]) / hundred;
    Decimal ht, vatTotal;
    QMap<QString, Decimal> vat;
    const auto bases = basesOf(book, header);
    for (auto base = bases.begin(); base != bases.end(); ++base) {
        ht += (base->ht * kept).rounded(2);
        vat[base.key()] = (base->vat * kept).rounded(2);
        vatTotal += vat[base.key()];
    }
    const Decimal carriage = read[table.fac_port];
    const Decimal carriageVat =
        carriage.isZero() ? Decimal() : (carriage * parameters::vatRate(book.molven, CarriageVat) / hundred).rounded(2);
    header[table.fac_tv1] = vat.value(QStringLiteral("1"));
    header[table.fac_tv2] = vat.value(QStringLiteral("2"));
    header[table.fac_tv3] = vat.value(QStringLiteral("3"));
    header[table.fac_tvp] = carriageVat;
    header[table.fac_ht] = ht + carriage + read[table.fac_exo];
    header[table.fac_ttc] = read[table.fac_ht] + vatTotal + carriageVat;
    header[table.fac_ffa] = read[table.fac_ttc] - read[table.fac_acpt];
}

Decimal otherVat(const DocumentHeaders& table, const Record& header) {
    Decimal left = header[table.fac_ttc] - header[table.fac_ht];
    for (const Number* shown : {&table.fac_tv1, &table.fac_tv2, &table.fac_tv3, &table.fac_tvp}) left -= header[*shown];
    return left;
}

} // namespace molven::totals

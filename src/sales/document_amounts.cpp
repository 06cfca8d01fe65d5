#include "sales/document_amounts.h"

#include "reference/parameters.h"
#include "sales/totals.h"

namespace molven {

namespace {

DocumentAmounts::Vat& of(QList<DocumentAmounts::Vat>& vat, Database molven, const QString& code) {
    for (DocumentAmounts::Vat& one : vat)
        if (one.code == code) return one;
    vat.append({code, parameters::vatRate(molven, code), {}, {}, {}});
    return vat.last();
}

} // namespace

DocumentAmounts amountsOf(Database molven, Database file, const DocumentKind& kind, const Record& header) {
    const DocumentHeaders& table = kind.headers;
    const Decimal hundred = 100;
    const Decimal kept = (hundred - header[table.fac_rem]) / hundred * (hundred - header[table.fac_esc]) / hundred;
    DocumentAmounts amounts;
    Decimal left;
    const auto bases = totals::basesOf(file, table, kind.lines, header);
    for (auto base = bases.begin(); base != bases.end(); ++base) {
        if (base->ht.isZero() && base->vat.isZero()) continue; // text lines bear no code
        const Decimal reduced = (base->ht * kept).rounded(2);
        amounts.vat.append(
            {base.key(), parameters::vatRate(molven, base.key()), reduced, (base->vat * kept).rounded(2), base->ht});
        amounts.lines += base->ht;
        left += reduced;
    }
    amounts.discount = header[table.fac_esc].isZero() ? amounts.lines - left
                                                      : (amounts.lines * header[table.fac_rem] / hundred).rounded(2);
    amounts.settlement = amounts.lines - left - amounts.discount;
    amounts.carriage = header[table.fac_port];
    amounts.exempt = header[table.fac_exo];
    if (!amounts.carriage.isZero()) {
        DocumentAmounts::Vat& carried = of(amounts.vat, molven, totals::CarriageVat);
        carried.base += amounts.carriage;
        carried.amount += header[table.fac_tvp];
    }
    return amounts;
}

} // namespace molven

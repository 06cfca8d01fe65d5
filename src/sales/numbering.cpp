#include "sales/numbering.h"

#include "data/errors.h"
#include "data/format.h"

namespace molven::numbering {

QString next(Database vente, const DocumentHeaders& headers) {
    const long long last = Decimal::fromText(vente.greatest(headers, headers.fac_no)).toInteger();
    if (last >= 999'999) throw Refusal(QStringLiteral("Numérotation impossible"), headers.fac_no.name);
    return format(Decimal(last + 1), QStringLiteral("000000"));
}

Criterion linesOf(const DocumentLines& lines, const QString& year, const QString& number) {
    return lines.fac_no == number && lines.fac_aa == year && lines.fac_lg != QStringLiteral("000");
}

int nextLine(Database vente, const DocumentLines& lines, const QString& year, const QString& number) {
    const int line = vente.greatest(lines, lines.fac_lg, linesOf(lines, year, number)).toInt() + 1;
    if (line > LastLine) throw Refusal(QStringLiteral("Document plein - ligne non crée"), lines.fac_lg.name);
    return line;
}

QString lineKey(int line) { return QString::number(line).rightJustified(3, u'0'); }

void addHiddenLine(Database vente, const DocumentLines& lines, const QString& year, const QString& number,
                   const QString& deliveryNote) {
    const QString key = QStringLiteral("000");
    const bool first = vente.count(lines, lines.fac_no == number && lines.fac_aa == year && lines.fac_lg == key) == 0;
    if (!first && deliveryNote.isEmpty()) return;
    Record hidden(lines);
    hidden[lines.fac_aa] = year;
    hidden[lines.fac_no] = number;
    hidden[lines.fac_lg] = key;
    hidden[lines.fac_nbl] = deliveryNote;
    vente.insert(hidden);
}

} // namespace molven::numbering

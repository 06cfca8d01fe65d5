#include "sales/numbering.h"

#include "data/errors.h"
#include "data/format.h"

#include <algorithm>

namespace molven::numbering {

QString next(const QList<Database>& files, const DocumentHeaders& headers) {
    long long last = 0;
    for (Database file : files)
        last = std::max(last,
                        static_cast<long long>(Decimal::fromText(file.greatest(headers, headers.fac_no)).toInteger()));
    if (last >= 999'999) throw Refusal(QStringLiteral("Numérotation impossible"), headers.fac_no.name);
    return format(Decimal(last + 1), QStringLiteral("000000"));
}

void foresee(const QList<Database>& files, const DocumentHeaders& headers) {
    for (Database file : files) file.foreseeGreatest(headers, headers.fac_no);
}

Criterion linesOf(const DocumentLines& lines, const QString& year, const QString& number) {
    return lines.fac_no == number && lines.fac_aa == year && lines.fac_lg != HiddenLine;
}

int nextLine(Database vente, const DocumentLines& lines, const QString& year, const QString& number) {
    return vente.greatest(lines, lines.fac_lg, linesOf(lines, year, number)).toInt() + 1;
}

namespace {

Criterion hiddenLineOf(const DocumentLines& lines, const QString& year, const QString& number) {
    return lines.fac_no == number && lines.fac_aa == year && lines.fac_lg == HiddenLine;
}

} // namespace

void foreseeLines(Database vente, const DocumentLines& lines, const QString& year, const QString& number) {
    vente.foreseeGreatest(lines, lines.fac_lg, linesOf(lines, year, number));
    vente.foreseeCount(lines, hiddenLineOf(lines, year, number));
}

QString lineKey(int line) { return QString::number(line).rightJustified(3, u'0'); }

int typedLine(const QString& text) {
    const QString& field = strlivl.fac_lg.name;
    if (text.trimmed().isEmpty()) throw Refusal(QStringLiteral("N° ligne obligatoire"), field);
    bool isNumber = false;
    const int line = text.trimmed().toInt(&isNumber);
    if (!isNumber || line < 1) throw Refusal(QStringLiteral("N° ligne incorrect"), field);
    return line;
}

void requireRoom(int line) {
    if (line > LastLine) throw Refusal(QStringLiteral("Document plein - ligne non crée"), strlivl.fac_lg.name);
}

void addHiddenLine(Database vente, const DocumentLines& lines, const QString& year, const QString& number,
                   const QString& deliveryNote) {
    const bool first = vente.count(lines, hiddenLineOf(lines, year, number)) == 0;
    if (!first && deliveryNote.isEmpty()) return;
    Record hidden(lines);
    hidden[lines.fac_aa] = year;
    hidden[lines.fac_no] = number;
    hidden[lines.fac_lg] = HiddenLine;
    hidden[lines.fac_nbl] = deliveryNote;
    vente.insert(hidden);
}

} // namespace molven::numbering

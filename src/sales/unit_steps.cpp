#include "sales/unit_steps.h"

#include "data/database.h"
#include "data/dates.h"
#include "sales/document_kind.h"
#include "sales/documents.h"
#include "sales/transfer_notes.h"
#include "sales/unit_history.h"
#include "stock/unit_tables.h"

#include <algorithm>

namespace molven::unit_steps {

namespace {

Record step(const QString& date, const QString& words, const QString& number, const QString& who) {
    Record made(strsuivi);
    made[strsuivi.sui_dat] = date;
    made[strsuivi.sui_lib] = words;
    made[strsuivi.sui_no] = number;
    made[strsuivi.sui_qui] = who.simplified();
    return made;
}

Criterion documentOf(const DocumentHeaders& headers, const Record& line) {
    return headers.fac_no == QString(line[strlivl.fac_no]) && headers.fac_aa == QString(line[strlivl.fac_aa]);
}

void foresee(Database file, const DocumentHeaders& headers, const QList<Record>& lines) {
    QList<Criterion> sought;
    for (const Record& line : lines) sought.append(documentOf(headers, line));
    file.foresee(headers, sought);
}

/// The header of a line's document; a blank one when it is lost.
Record headerOf(Database& file, const DocumentHeaders& headers, const Record& line) {
    return file.find(headers, documentOf(headers, line)).value_or(Record(headers));
}

Record transferStep(Database& file, const Record& line) {
    const Record note = headerOf(file, strbtre, line);
    QString words = QStringLiteral("Bon de transfert");
    if (transfer_notes::isOfSet(note)) words += QStringLiteral(", ") + note[strbtre.fac_btr];
    Record made = step(note[strbtre.fac_dat], words, line[strlivl.fac_no],
                       QStringLiteral("%1 du dépôt %2 au dépôt %3")
                           .arg(note[strbtre.fac_nom], note[strbtre.fac_depd], note[strbtre.fac_depa]));
    made[strsuivi.sui_mode] = QStringLiteral("BTR");
    return made;
}

/// What a document is; of a mode word that is not known, the first kind of its table.
const DocumentKind& kindOf(const DocumentHeaders& headers, const Record& header) {
    const DocumentKind* first = nullptr;
    for (const DocumentKind& kind : documentKinds()) {
        if (&kind.headers != &headers || kind.file != DataFile::Vente) continue;
        if (molven::documents::isOfKind(kind, header)) return kind;
        if (!first) first = &kind;
    }
    return *first;
}

Record documentStep(Database& file, const DocumentHeaders& headers, const Record& line) {
    const Record header = headerOf(file, headers, line);
    const DocumentKind& kind = kindOf(headers, header);
    Record made = step(header[headers.fac_datf], kind.shownLabel, line[strlivl.fac_no],
                       line[strlivl.fac_clt] + u' ' + header[headers.fac_nom]);
    made[strsuivi.sui_mode] = kind.mode;
    return made;
}

} // namespace

Record arrival(const Record& unit) {
    return step(unit[strproduit.dat_liv], QStringLiteral("Réception"), unit[strproduit.num_liv],
                QStringLiteral("Fournisseur ") + unit[strproduit.fou_cde]);
}

QList<Record> stay(const Record& unit) {
    QList<Record> steps;
    if (const QString set = unit[strproduit.stk_anc_cod]; !set.isEmpty())
        steps.append(step({}, QStringLiteral("Ancillaire"), unit[strproduit.stk_anc_imm], set));
    if (const QString patient = unit[strproduit.reg_pat]; !patient.isEmpty())
        steps.append(step(unit[strproduit.reg_dat], QStringLiteral("Pose"), {}, QStringLiteral("Patient ") + patient));
    return steps;
}

QList<Record> documents(const UnitTrail& lines, Database file) {
    foresee(file, strbtre, lines.transfers);
    foresee(file, strcsge, lines.consignments);
    foresee(file, strlive, lines.deliveries);
    foresee(file, strface, lines.invoices);
    QList<Record> steps;
    for (const Record& line : lines.transfers) steps.append(transferStep(file, line));
    for (const Record& line : lines.consignments) steps.append(documentStep(file, strcsge, line));
    for (const Record& line : lines.deliveries) steps.append(documentStep(file, strlive, line));
    for (const Record& line : lines.invoices) steps.append(documentStep(file, strface, line));
    return steps;
}

QList<Record> sorted(QList<Record> steps) {
    const auto dayOf = [](const Record& step) {
        const QString day = sortKey(step[strsuivi.sui_dat]);
        return day.isEmpty() ? QStringLiteral("99999999") : day;
    };
    std::stable_sort(steps.begin(), steps.end(), [&](const Record& a, const Record& b) { return dayOf(a) < dayOf(b); });
    return steps;
}

} // namespace molven::unit_steps

#include "stock/set_overview.h"

#include "data/dates.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "stock/set_types.h"

#include <algorithm>
#include <tuple>

namespace molven::set_overview {

namespace {

const QString Complete = QStringLiteral("Complet");
const QString NoMonth = QStringLiteral("999999");

/// "yyyymm"; beyond all others for a unit without expiry.
QString monthOf(const QString& expiry) { return isMonthYear(expiry) ? expiry.right(4) + expiry.left(2) : NoMonth; }

QString earliestExpiry(Database molven, const Recordset& lines) {
    QString earliest;
    for (const Record& line : lines) {
        const auto unit = units::find(molven, Immatriculation::fromText(line[strstock.stk_imm_art]));
        const QString expiry = unit ? unit->value(strproduit.dat_per) : QString();
        if (monthOf(expiry) < monthOf(earliest)) earliest = expiry;
    }
    return earliest;
}

Record rowOf(Database molven, Database ancillaire, const Record& header) {
    Record row(stretatanc);
    row.copyFrom(header);
    if (isEmptyDate(header[strstock.stk_dat_vte])) row[stretatanc.stk_dat_vte] = QString();
    const Recordset lines = ancillary_sets::lines(ancillaire, header[strstock.stk_anc_imm]);
    row[stretatanc.eta_nb] = static_cast<long long>(lines.count());
    row[stretatanc.eta_tot] = static_cast<long long>(set_types::unitsOf(ancillaire, header[strstock.stk_anc_code]));
    const QString wrong = differences(ancillary_sets::components(ancillaire, header), lines.count());
    row[stretatanc.eta_com] = wrong.isEmpty() ? Complete : wrong;
    row[stretatanc.eta_per] = earliestExpiry(molven, lines);
    return row;
}

} // namespace

QString differences(const QList<ancillary_sets::Component>& components, qint64 units) {
    QStringList lacking, spare;
    for (const ancillary_sets::Component& component : components) {
        units -= component.placed;
        if (component.lacking() > 0)
            lacking.append(QStringLiteral("%1 %2").arg(component.lacking()).arg(component.reference));
        else if (component.placed > component.wanted)
            spare.append(QStringLiteral("%1 %2").arg(component.placed - component.wanted).arg(component.reference));
    }
    if (units > 0) spare.append(counted(units, QStringLiteral("unité")) + QStringLiteral(" hors nomenclature"));
    QStringList words;
    if (!lacking.isEmpty()) words.append(QStringLiteral("Manque : ") + lacking.join(QStringLiteral(", ")));
    if (!spare.isEmpty()) words.append(QStringLiteral("En trop : ") + spare.join(QStringLiteral(", ")));
    return words.join(QStringLiteral(" ; "));
}

QList<Record> contents(Database molven, Database ancillaire, const QString& serial) {
    QList<Record> found;
    for (const Record& line : ancillary_sets::lines(ancillaire, serial)) {
        Record row(strcontenu);
        row.copyFrom(line);
        if (const auto unit = units::find(molven, Immatriculation::fromText(line[strstock.stk_imm_art])))
            row.copyFrom(*unit);
        found.append(row);
    }
    return found;
}

QList<Record> rows(Database molven, Database ancillaire, const QString& type) {
    Criterion headers = strstock.stk_anc_imm_lg == QStringLiteral("000");
    if (!type.isEmpty()) headers = headers && strstock.stk_anc_code == type;
    QList<Record> found;
    for (const Record& header : ancillaire.select(strstock, headers, strstock.stk_anc_imm))
        found.append(rowOf(molven, ancillaire, header));
    return found;
}

units::Expiry expiryOf(const Record& row) {
    Record unit(strproduit);
    unit[strproduit.dat_per] = row[stretatanc.eta_per];
    return units::expiryOf(unit);
}

bool isComplete(const Record& row) { return row[stretatanc.eta_com] == Complete; }

QList<Record> urgentFirst(QList<Record> rows) {
    const auto rankOf = [](const Record& row) {
        const units::Expiry expiry = expiryOf(row);
        const bool expires = expiry == units::Expiry::Past || expiry == units::Expiry::Soon;
        return std::tuple(!expires, isComplete(row), monthOf(row[stretatanc.eta_per]));
    };
    std::stable_sort(rows.begin(), rows.end(), [&](const Record& a, const Record& b) { return rankOf(a) < rankOf(b); });
    return rows;
}

} // namespace molven::set_overview

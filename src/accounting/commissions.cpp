#include "accounting/commissions.h"

#include "data/format.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"

namespace molven::commissions {

namespace {

const QString Reduced = QStringLiteral("1"), Normal = QStringLiteral("2");

/// VAT on a commission, in thousandths.
int vatRate(const QString& vatClass) { return vatClass == Reduced ? 55 : vatClass == Normal ? 196 : 0; }

Total& totalOf(Statement& statement, const QString& vatClass) {
    return vatClass == Reduced ? statement.reduced : vatClass == Normal ? statement.normal : statement.exempt;
}

QString keyOf(const QString& representative, const QString& category) {
    return representative.toUpper() + u'/' + category.toUpper();
}

QHash<QString, Decimal> rates(Database molven) {
    QHash<QString, Decimal> found;
    for (const Record& rate : molven.select(strtauxrep))
        found.insert(keyOf(rate[strtauxrep.c_rep], rate[strtauxrep.c_ref]), rate[strtauxrep.c_tau]);
    return found;
}

Line lineOf(const Record& sale, const Decimal& rate) {
    const auto& s = statd;
    const Decimal net = sale[s.sta_net], commission = (net * rate / Decimal(100)).floored(2);
    const QString vatClass = sale[s.sta_tva];
    return {sale[s.sta_no],
            sale[s.sta_datf],
            sale[s.sta_ref],
            sale[s.sta_li1],
            vatClass,
            sale[s.sta_qte],
            net,
            rate,
            commission,
            commission * Decimal(vatRate(vatClass)) / Decimal(1000)};
}

} // namespace

Decimal Statement::due() const {
    return exempt.commission + reduced.commission + reduced.vat + normal.commission + normal.vat;
}

QList<Statement> statements(Database tri, Database molven, const QString& first, const QString& last) {
    const auto& s = statd;
    const QString start = first.trimmed().isEmpty() ? QStringLiteral("000") : padded(first, s.sta_rep.size);
    const QString end = last.trimmed().isEmpty() ? QStringLiteral("999") : padded(last, s.sta_rep.size);
    const Recordset sales = tri.select(s, s.sta_rep >= start && s.sta_rep <= end, {s.sta_rep, s.sta_no, s.sta_lg});
    const auto known = rates(molven);
    QList<Statement> found;
    for (const Record& sale : sales) {
        const QString representative = sale[s.sta_rep];
        if (found.isEmpty() || found.last().representative.compare(representative, Qt::CaseInsensitive) != 0) {
            const QString name = parameters::label(molven, list::Representative, representative);
            found.append({representative, name.isEmpty() ? QStringLiteral("INCONNU") : name, {}, {}, {}, {}});
        }
        const Line line = lineOf(sale, known.value(keyOf(representative, sale[s.sta_crp])));
        Total& total = totalOf(found.last(), sale[s.sta_tva]);
        total.commission += line.commission;
        total.vat += line.vat;
        found.last().lines.append(line);
    }
    return found;
}

QList<Record> rows(const QList<Statement>& statements) {
    const auto& c = strcommission;
    QList<Record> found;
    for (const Statement& statement : statements) {
        Decimal turnover;
        for (const Line& line : statement.lines) turnover += line.net;
        Record row(c);
        row[c.com_rep] = statement.representative;
        row[c.com_nom] = statement.name;
        row[c.com_lig] = Decimal(static_cast<long long>(statement.lines.size()));
        row[c.com_ca] = turnover;
        row[c.com_exo] = statement.exempt.commission;
        row[c.com_tv1] = statement.reduced.commission;
        row[c.com_tv2] = statement.normal.commission;
        row[c.com_tva] = statement.reduced.vat + statement.normal.vat;
        row[c.com_net] = statement.due();
        found.append(row);
    }
    return found;
}

std::optional<Period> covered(Database tri) {
    const QString last = tri.greatest(statd, statd.sta_datf);
    if (last.isEmpty()) return std::nullopt;
    return Period{(*tri.find(statd, {}, statd.sta_datf))[statd.sta_datf], last};
}

} // namespace molven::commissions

#include "screens/accounting/transfer_paper.h"

#include "accounting/tables.h"
#include "data/format.h"
#include "data/period.h"
#include "reference/parameter_tables.h"
#include "screens/accounting/figures.h"

namespace molven {

namespace {

QString amountOrBlank(const Decimal& amount) { return amount.isZero() ? QString() : format(amount, Amount); }

} // namespace

Report printedTransfer(Database compta, const QString& number) {
    const auto& e = strecrit;
    Report report(QStringLiteral("TRANSFERT EN COMPTABILITE N° ") + number, {{QStringLiteral("Ecriture")},
                                                                             {QStringLiteral("Date")},
                                                                             {QStringLiteral("N° pièce")},
                                                                             {QStringLiteral("Compte")},
                                                                             {QStringLiteral("Libellé")},
                                                                             {QStringLiteral("Débit"), true},
                                                                             {QStringLiteral("Crédit"), true},
                                                                             {QStringLiteral("Echéance")}});
    const Criterion asked = e.ecr_trf == number;
    const Recordset lines = compta.select(e, asked, {e.ecr_num, e.ecr_lg});
    if (!lines.isEmpty())
        report.say(QStringLiteral("Journal des ventes (%1), transféré le %2")
                       .arg(lines.at(0)[e.ecr_jou], dayOfKey(lines.at(0)[e.ecr_jtr])));
    for (const Record& line : lines)
        report.row({line[e.ecr_num], line[e.ecr_dat], line[e.ecr_no], line[e.ecr_cpt], line[e.ecr_lib],
                    amountOrBlank(line[e.ecr_deb]), amountOrBlank(line[e.ecr_cre]), line[e.ecr_ech]});
    const auto labels = compta.valuesBy(strplan, strplan.cpt_aff, strplan.cpt_lib);
    Decimal debit, credit;
    for (const Summary& one : compta.summary(e, {&e.ecr_cpt}, {&e.ecr_deb, &e.ecr_cre}, asked)) {
        debit += one.sums[0];
        credit += one.sums[1];
        report.total(QStringLiteral("Compte %1 %2 : débit %3   crédit %4")
                         .arg(one.group.first(), labels.value(one.group.first()), format(one.sums[0], Amount),
                              format(one.sums[1], Amount)));
    }
    report.total(QStringLiteral("TOTAUX : débit %1   crédit %2").arg(format(debit, Amount), format(credit, Amount)));
    report.count();
    return report;
}

} // namespace molven

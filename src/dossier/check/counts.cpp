#include "dossier/check/checks.h"

#include "sales/document_kind.h"
#include "stock/depot_counts.h"

#include <algorithm>

namespace molven::check {

namespace {

const QString FileName = QStringLiteral("molven.mdb");

/// Whether a document of that mode and number has the unit on one of its lines.
bool isOnPaper(const Papers& papers, const QString& unit, const QString& mode, const QString& number) {
    const DocumentHeaders* headers = &documentKind(mode).headers;
    const QList<UnitLine> lines = papers.units().value(unit);
    return std::any_of(lines.begin(), lines.end(), [&](const UnitLine& line) {
        return &line.paper->family->headers == headers && line.paper->number == number;
    });
}

} // namespace

void checkCounts(references::Files& files, const Papers& papers, Faults& faults) {
    Database molven = files[DataFile::Molven];
    const auto fault = [&](const QString& subject, const QString& text) {
        faults.append({FileName, subject, text, &kind::Counts});
    };
    QHash<QString, QString> states; // by number
    QHash<QString, QString> open;   // numbers by depot
    for (const Record& count : molven.select(strinvdep, {}, strinvdep.inv_no)) {
        const QString number = count[strinvdep.inv_no], depot = count[strinvdep.inv_dep];
        states.insert(number, count[strinvdep.inv_eta]);
        if (count[strinvdep.inv_eta] != count_state::Open) continue;
        if (open.contains(depot))
            fault(number, QStringLiteral("dépôt %1 déjà en cours, inventaire %2").arg(depot, open[depot]));
        open.insert(depot, number);
    }
    for (const Record& line : molven.select(strinvlig)) {
        const QString unit = line[strinvlig.lig_imm], document = line[strinvlig.lig_doc];
        const QString subject = line[strinvlig.lig_no] + u'/' + unit;
        const auto known = states.constFind(line[strinvlig.lig_no]);
        const bool isClosed = known != states.constEnd() && *known == count_state::Closed;
        if (known == states.constEnd())
            fault(subject, QStringLiteral("unité d'un inventaire absent"));
        else if (isClosed == line[strinvlig.lig_con].isEmpty())
            fault(subject, isClosed ? QStringLiteral("sans constat dans un inventaire clôturé")
                                    : QStringLiteral("constat dans un inventaire en cours"));
        if (!document.isEmpty() && !isOnPaper(papers, unit, line[strinvlig.lig_mod], document))
            fault(subject, QStringLiteral("n'est pas sur le document %1 qui l'a réglée").arg(document));
    }
}

} // namespace molven::check

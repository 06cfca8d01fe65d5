#pragma once

#include "support/faults.h"
#include "support/sales.h"

#include "sales/count_documents.h"
#include "sales/transfer_notes.h"

namespace molven::test {

/// The count of a depot, begun or taken up, as a screen opens it.
inline DepotCount countOf(Database molven, const char* depot = "101") {
    const Record fresh = depot_counts::blank(molven, QString::fromLatin1(depot));
    return DepotCount(molven, depot_counts::openOf(molven, fresh[strinvdep.inv_dep]).value_or(fresh));
}

/// "expected found missing unexpected moved twice".
inline QString figuresOf(const DepotCount& count) {
    const CountTally tally = count.tally();
    QStringList figures;
    for (const qint64 figure : {tally.expected, tally.found, tally.missing, tally.unexpected, tally.moved, tally.twice})
        figures.append(QString::number(figure));
    return figures.join(u' ');
}

/// Every row of a closed count that a document can settle.
inline QList<Record> settleable(const DepotCount& count) {
    QList<Record> rows;
    for (const QString& found : {verdict::Missing, verdict::Unexpected, verdict::Found})
        for (const Record& row : count.rows(found))
            if (count_documents::isSettleable(count, row)) rows.append(row);
    return rows;
}

/// Moves units between depots.
inline Record transfer(const Session& session, const QStringList& units, const char* client, const char* from,
                       const char* to) {
    SalesBook notes(session, documentKind(QStringLiteral("BTR")));
    Record header = documents::blank(notes, QString::fromLatin1(client));
    header[strbtre.fac_depd] = QString::fromLatin1(from);
    header[strbtre.fac_depa] = QString::fromLatin1(to);
    return transfer_notes::write(notes, header, units);
}

} // namespace molven::test

#include "data/errors.h"
#include "data/layout.h"
#include "dossier/check/checks.h"
#include "reference/articles.h"

#include <QFile>

namespace molven::check {

namespace {

QStringList repairIndexes(const Session& session) {
    QStringList mended;
    for (const CatalogueEntry& entry : catalogue()) {
        const QString path = session.path(entry.file);
        if (!QFile::exists(path)) continue;
        const QList<Layout::IndexFault> faults = Layout::indexFaults(path, tablesOf(entry.file));
        if (faults.isEmpty()) continue;
        Layout::repairIndexes(path, tablesOf(entry.file));
        for (const Layout::IndexFault& fault : faults)
            mended.append(entry.name + QStringLiteral(" : refait, ") + fault.text);
    }
    return mended;
}

QStringList recount(Database molven) {
    QStringList mended;
    const QHash<QString, qint64> inStock = unitsInStock(molven);
    for (const Record& article : molven.select(strarticle, strarticle.art_aig == follow_up::ByUnit)) {
        const QString reference = article[strarticle.art_ref];
        const Decimal counted = static_cast<long long>(inStock.value(reference.toUpper()));
        const Decimal stock = article[strarticle.art_stk];
        if (stock == counted) continue;
        molven.update(strarticle, {{strarticle.art_stk, counted.toString()}}, strarticle.art_ref == reference);
        mended.append(
            QStringLiteral("article %1 : stock %2 -> %3").arg(reference, stock.toString(), counted.toString()));
    }
    return mended;
}

/// Puts the totals of one family's documents right.
QStringList total(Database file, const Family& family) {
    const DocumentHeaders& table = family.headers;
    QStringList mended;
    for (const Record& header : file.select(table)) {
        Record right = header;
        totals::put(table, right, totals::basesOf(file, table, family.lines, header),
                    header[table.fac_port].isZero() ? Decimal() : header[table.fac_tvp]);
        QList<Assignment> changes;
        for (const Number* field : totals::fields(table))
            if (right.value(*field) != header.value(*field) && std::as_const(right)[*field] != header[*field])
                changes.append({*field, right.value(*field)});
        if (changes.isEmpty()) continue;
        file.update(table, changes, table.fac_no == header[table.fac_no] && table.fac_aa == header[table.fac_aa]);
        mended.append(QStringLiteral("%1 %2 : TTC %3 -> %4")
                          .arg(family.name, header[table.fac_no], header[table.fac_ttc].toFixed(2),
                               std::as_const(right)[table.fac_ttc].toFixed(2)));
    }
    return mended;
}

} // namespace

QStringList repair(const Session& session) {
    QStringList mended = repairIndexes(session);
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    const QList<Database> documents{workspace.open(session.vente()), workspace.open(session.historic())};
    Transaction transaction(workspace, QStringLiteral("Réparation"));
    mended += recount(molven);
    for (const Database& file : documents)
        for (const Family& family : families())
            if (family.isPriced) mended += total(file, family);
    transaction.commit();
    return mended;
}

} // namespace molven::check

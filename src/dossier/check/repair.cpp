#include "data/errors.h"
#include "data/format.h"
#include "data/journal_tables.h"
#include "data/layout.h"
#include "dossier/check/checks.h"
#include "reference/articles.h"
#include "stock/unit_tables.h"

#include <QSet>

#include <algorithm>

namespace molven::check {

bool isMended(const Table& table, const Field& field) {
    if (&table == &strarticle) return &field == &strarticle.art_stk;
    for (const Family& family : families())
        if (const auto fields = totals::fields(family.headers); &table == &family.headers)
            return std::any_of(fields.begin(), fields.end(), [&field](const Number* total) { return total == &field; });
    return false;
}

void holdBack(Faults& faults) {
    const auto keyOf = [](const Place& place) { return place.path + u'|' + place.table->name + u'|' + place.key; };
    QSet<QString> inDoubt;
    bool areUnitsInDoubt = false;
    for (const Fault& fault : faults) {
        if (fault.kind->isMended) continue;
        if (fault.place.table) inDoubt.insert(keyOf(fault.place));
        if (fault.kind == &kind::Units || fault.place.table == &strproduit) areUnitsInDoubt = true;
    }
    for (Fault& fault : faults) {
        const bool isFileInDoubt = inDoubt.contains(keyOf({fault.place.path, &strjournal, {}}));
        if (fault.kind == &kind::Totals && (isFileInDoubt || inDoubt.contains(keyOf(fault.place))))
            fault.kind = &kind::WaitingTotals;
        if (fault.kind == &kind::Quantities && (isFileInDoubt || areUnitsInDoubt))
            fault.kind = &kind::WaitingQuantities;
    }
}

namespace {

/// Counts the units of these articles again.
QStringList recount(Database molven, const QStringList& references) {
    QStringList mended;
    const QHash<QString, StockCount> inStock = unitsInStock(molven);
    for (const Record& article : molven.select(strarticle, isOneOf(strarticle.art_ref, references))) {
        const QString reference = article[strarticle.art_ref];
        const StockCount count = inStock.value(reference.toUpper());
        const Decimal stock = article[strarticle.art_stk], counted = static_cast<long long>(count.unsold - count.away);
        if (count.allows(stock)) continue;
        molven.update(strarticle, {{strarticle.art_stk, counted.toString()}}, strarticle.art_ref == reference);
        mended.append(QStringLiteral("article %1 : stock %2 -> %3").arg(reference, shown(stock), shown(counted)));
    }
    return mended;
}

/// Puts the totals of one document right.
QStringList total(Database file, const Family& family, const QString& key) {
    const DocumentHeaders& table = family.headers;
    const Criterion document = table.fac_aa == key.section(u'/', 0, 0) && table.fac_no == key.section(u'/', 1);
    const auto found = file.find(table, document);
    if (!found) return {};
    const Record& header = *found;
    Record right = header;
    totals::put(table, right, totals::basesOf(file, table, family.lines, header),
                header[table.fac_port].isZero() ? Decimal() : header[table.fac_tvp]);
    QList<Assignment> changes;
    for (const Number* field : totals::fields(table))
        if (right.value(*field) != header.value(*field) && right[*field] != header[*field])
            changes.append({*field, right.value(*field)});
    if (changes.isEmpty()) return {};
    file.update(table, changes, document);
    return {QStringLiteral("%1 %2 : TTC %3 -> %4")
                .arg(family.name, header[table.fac_no], amountText(header[table.fac_ttc]),
                     amountText(right[table.fac_ttc]))};
}

} // namespace

QStringList repair(const Session& session) {
    QStringList mended;
    QMap<QString, QList<Place>> places; // by file
    QSet<QString> indexed;
    for (const Fault& fault : run(session)) {
        if (fault.kind == &kind::Totals || fault.kind == &kind::Quantities)
            places[fault.place.path].append(fault.place);
        if (fault.kind != &kind::Indexes) continue;
        indexed.insert(fault.place.path);
        mended.append(fault.file + QStringLiteral(" : refait, ") + fault.text);
    }
    for (const QString& path : indexed) Layout::repairIndexes(path, tablesOf(dataFileAt(path).value()));
    for (auto file = places.begin(); file != places.end(); ++file) {
        Workspace workspace;
        Database database = workspace.open(file.key());
        Transaction transaction(workspace, QStringLiteral("Réparation"));
        QStringList references;
        for (const Place& place : *file) {
            if (place.table == &strarticle) references.append(place.key);
            for (const Family& family : families())
                if (place.table == &family.headers) mended += total(database, family, place.key);
        }
        if (!references.isEmpty()) mended += recount(database, references);
        transaction.commit();
    }
    return mended;
}

} // namespace molven::check

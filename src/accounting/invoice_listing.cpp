#include "accounting/invoice_listing.h"

#include "data/dates.h"
#include "data/format.h"
#include "data/joined.h"
#include "data/require.h"
#include "reference/party_tables.h"

#include <QSet>

#include <algorithm>

namespace molven::invoice_listing {

namespace {

struct Range {
    QString first, last;
};

Range rangeOf(const Clients& clients) {
    const auto bound = [](const QString& typed, const char* otherwise) {
        return typed.trimmed().isEmpty() ? QString::fromLatin1(otherwise) : padded(typed, strclient.clt_cod.size);
    };
    const Range range{bound(clients.first, "000000"), bound(clients.last, "999999")};
    require(range.first <= range.last, QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("txtcltfin"));
    return range;
}

QSet<QString> codesOf(Database molven, const Criterion& criterion) {
    QSet<QString> found;
    for (const QStringList& row : molven.values(strclient, {&strclient.clt_cod}, criterion)) found.insert(row.first());
    return found;
}

/// The invoices of these clients that also meet a condition.
QList<Record> invoices(Files& files, const Clients& clients, const Criterion& condition) {
    const Range range = rangeOf(clients);
    const DocumentHeaders& h = strface;
    const QString family = clients.family.trimmed();
    const QSet<QString> ofFamily =
        family.isEmpty() ? QSet<QString>() : codesOf(files.molven, strclient.clt_fam == family);
    QList<Record> found;
    for (Database file : {files.vente, files.historic})
        for (const Record& header : file.select(h, condition && h.fac_clt >= range.first && h.fac_clt <= range.last))
            if (family.isEmpty() || ofFamily.contains(header[h.fac_clt])) found.append(header);
    require(!found.isEmpty(), QStringLiteral("aucune facture sélectionnée"), QStringLiteral("Mskdatdeb"));
    return found;
}

void sortBy(QList<Record>& records, const std::function<QStringList(const Record&)>& key) {
    std::vector<std::pair<QStringList, Record>> keyed;
    for (const Record& record : records) keyed.emplace_back(key(record), record);
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    records.clear();
    for (const auto& [sortedBy, record] : keyed) records.append(record);
}

} // namespace

QString Clients::words() const {
    QStringList parts;
    if (!first.trimmed().isEmpty() || !last.trimmed().isEmpty()) {
        const Range range = rangeOf(*this);
        parts.append(QStringLiteral("clients %1 à %2").arg(range.first, range.last));
    }
    if (!family.trimmed().isEmpty()) parts.append(QStringLiteral("famille client ") + family.trimmed());
    return parts.join(QStringLiteral("   "));
}

QString groupKey(const Record& header, Grouping grouping) {
    const DocumentHeaders& h = strface;
    return grouping == Grouping::Client        ? header[h.fac_clt]
           : grouping == Grouping::PaymentMode ? header[h.fac_rglt]
                                               : dueKey(header);
}

Files openFiles(Workspace& workspace, const Session& session) {
    Database molven = workspace.open(session.molven());
    const Database vente = workspace.open(session.vente());
    return {molven, vente, workspace.open(session.historic())};
}

QString dueKey(const Record& header) {
    const QString due = sortKey(header[strface.fac_ech]);
    return due.isEmpty() ? QString(header[strface.tri_datf]) : due;
}

Decimal vatOf(const Record& header) { return header[strface.fac_ttc] - header[strface.fac_ht]; }

QList<Record> ofPeriod(Files files, const Period& period, const Clients& clients) {
    const DocumentHeaders& h = strface;
    QList<Record> found = invoices(files, clients, period.covers(h.tri_datf));
    const Range range = rangeOf(clients);
    if (range.first != range.last) {
        const QSet<QString> without = codesOf(files.molven, strclient.clt_edtr == QStringLiteral("N"));
        found.removeIf([&](const Record& header) { return without.contains(header[h.fac_clt]); });
        require(!found.isEmpty(), QStringLiteral("aucune facture sélectionnée"), QStringLiteral("Mskdatdeb"));
    }
    sortBy(found, [&](const Record& header) {
        return QStringList{header[h.fac_clt], header[h.tri_datf], header[h.fac_aa], header[h.fac_no]};
    });
    return found;
}

QList<Record> due(Files files, const Period& period, const Clients& clients, Grouping grouping) {
    const DocumentHeaders& h = strface;
    QList<Record> found = invoices(
        files, clients, period.covers(dayKey(h.fac_ech)) || (h.fac_ech == QString() && period.covers(h.tri_datf)));
    sortBy(found, [&](const Record& header) {
        return QStringList{groupKey(header, grouping), dueKey(header), header[h.fac_aa], header[h.fac_no]};
    });
    return found;
}

} // namespace molven::invoice_listing

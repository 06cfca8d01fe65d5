#include "stock/depot_counts.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/journal.h"
#include "data/require.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "stock/unit_locks.h"
#include "stock/units.h"

namespace molven::depot_counts {

namespace {

Record stored(Database molven, const Record& count) {
    const auto found = molven.find(strinvdep, strinvdep.inv_no == count[strinvdep.inv_no]);
    require(found.has_value(), "Cet inventaire a été abandonné par un autre poste", strinvdep.inv_dep);
    return *found;
}

Criterion linesOf(const Record& count) { return strinvlig.lig_no == count[strinvdep.inv_no]; }

/// The verdicts on the units read; the found ones, nearly all of them, by one statement.
void writeVerdicts(Database molven, const Record& count, const DepotCount& fresh) {
    QHash<QString, Record> rows;
    for (const Record& row : fresh.readings()) rows.insert(row[strconstat.lig_imm], row);
    molven.update(strinvlig, {{strinvlig.lig_con, verdict::Found}}, linesOf(count));
    for (const Record& line : molven.select(strinvlig, linesOf(count))) {
        const Record row = *rows.constFind(line[strinvlig.lig_imm]);
        QList<const Field*> fields{&strinvlig.lig_con};
        if (row[strconstat.lig_con] != verdict::Moved) // which keeps what it was moved from
            fields += {&strinvlig.lig_tes, &strinvlig.lig_dep, &strinvlig.lig_vte, &strinvlig.lig_tri};
        QList<Assignment> changes;
        for (const Field* field : fields) {
            const QString value = row.value(*row.table().field(field->name));
            if (value != line.value(*field)) changes.append({*field, value});
        }
        if (!changes.isEmpty())
            molven.update(strinvlig, changes, linesOf(count) && strinvlig.lig_imm == line[strinvlig.lig_imm]);
    }
}

} // namespace

Record blank(Database molven, const QString& typed) {
    const QString depot = codes::completed(molven, codes::Depot, typed);
    require(!depot.isEmpty(), "Dépôt obligatoire", strinvdep.inv_dep);
    require(codes::isKnown(molven, codes::Depot, depot), "Ce dépôt n'existe pas", strinvdep.inv_dep);
    require(depot != SetDepot, "Le dépôt des ancillaires se compte ancillaire par ancillaire", strinvdep.inv_dep);
    Record count(strinvdep);
    count[strinvdep.inv_dep] = depot;
    count[strinvdep.inv_eta] = count_state::Open;
    count[strinvdep.inv_par] = author::systemUser().left(strinvdep.inv_par.size);
    count[strinvdep.inv_moi] = 3;
    if (const auto client = clientOf(molven, depot)) count[strinvdep.inv_clt] = client->value(strclient.clt_cod);
    return count;
}

std::optional<Record> openOf(Database molven, const QString& depot) {
    return molven.find(strinvdep, strinvdep.inv_dep == depot && strinvdep.inv_eta == count_state::Open);
}

std::optional<Record> clientOf(Database molven, const QString& depot) {
    if (depot == MainDepot) return std::nullopt;
    return molven.find(strclient, strclient.clt_dep == depot, strclient.clt_cod);
}

void requireClientOf(Database molven, const QString& depot, const QString& client) {
    const auto own = clientOf(molven, depot);
    if (client.isEmpty() || !own) return;
    const auto signing = parties::findClient(molven, client);
    if (!signing || signing->value(strclient.clt_dep) != depot)
        throw Refusal(QStringLiteral("Ce dépôt est celui du client %1 %2")
                          .arg((*own)[strclient.clt_cod], (*own)[strclient.clt_nom]),
                      strinvdep.inv_clt.name);
}

Record requireOpen(Database molven, const Record& count) {
    const Record now = stored(molven, count);
    require(now[strinvdep.inv_eta] == count_state::Open, "Cet inventaire a été clôturé par un autre poste",
            strinvdep.inv_dep);
    return now;
}

Record close(Database molven, const DepotCount& seen, const Progress& progress) {
    Transaction transaction(molven.workspace(), QStringLiteral("Clôture d'un inventaire")); // the depot stands still
    require(seen.isBegun(), "Aucune unité n'a été lue", strinvdep.inv_dep);
    Record closed = requireOpen(molven, seen.header());
    const DepotCount fresh(molven, closed);
    // The figures alone would not tell one unit from another that took its place.
    require(fresh.tally() == seen.tally() && fresh.verdicts() == seen.verdicts(),
            "L'inventaire a changé sur un autre poste : vérifiez les nombres, puis clôturez", strinvdep.inv_dep);
    writeVerdicts(molven, closed, fresh);
    const QList<Record> missing = fresh.rows(verdict::Missing);
    for (qsizetype i = 0; i < missing.size(); ++i) {
        if (progress && !progress(static_cast<int>(i), static_cast<int>(missing.size())))
            throw Refusal(QStringLiteral("Opération abandonnée"));
        Record line(strinvlig);
        line.copyFrom(missing[i]);
        line[strinvlig.lig_no] = closed[strinvdep.inv_no];
        line[strinvlig.lig_lec] = 0;
        molven.insert(line);
    }
    closed[strinvdep.inv_eta] = count_state::Closed;
    closed[strinvdep.inv_clo] = dateText(Clock::today());
    molven.update(
        strinvdep,
        {{strinvdep.inv_eta, closed.value(strinvdep.inv_eta)}, {strinvdep.inv_clo, closed.value(strinvdep.inv_clo)}},
        strinvdep.inv_no == closed.value(strinvdep.inv_no));
    transaction.commit();
    return closed;
}

void drop(Database molven, const Record& count) {
    const Locks locks = Locks::of({unit_locks::count(count[strinvdep.inv_dep])});
    Transaction::run(molven.workspace(), QStringLiteral("Abandon d'un inventaire"), locks, [&] {
        requireOpen(molven, count);
        molven.remove(strinvlig, linesOf(count));
        molven.remove(strinvdep, strinvdep.inv_no == count[strinvdep.inv_no]);
    });
}

void release(Database molven, const QString& mode, const QString& document, const QString& unit) {
    molven.update(strinvlig, {{strinvlig.lig_mod, {}}, {strinvlig.lig_doc, {}}},
                  strinvlig.lig_imm == unit && strinvlig.lig_mod == mode && strinvlig.lig_doc == document);
}

QString situation(const QString& unitState, const QString& depot, const QString& document) {
    if (unitState == state::Delivered) return QStringLiteral("livrée, document ") + document;
    if (unitState == state::Sold) return QStringLiteral("vendue ou consignée, document ") + document;
    if (unitState == state::InSet)
        return depot == SetDepot ? QStringLiteral("dans un ancillaire au dépôt principal")
                                 : QStringLiteral("dans un ancillaire chez le client ") + depot;
    return depot == ReturnedDepot ? QStringLiteral("rendue au fournisseur") : QStringLiteral("au dépôt ") + depot;
}

} // namespace molven::depot_counts

#include "sales/replenishment.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/transfer_notes.h"
#include "stock/depot_tables.h"
#include "stock/units.h"

#include <algorithm>

namespace molven::replenishment {

namespace {

const auto& Row = strreassort;

QString keyOf(const QString& depot, const QString& reference) { return depot.toUpper() + u'/' + reference.toUpper(); }

/// Units that a depot has at its disposal.
Criterion inStock() { return strproduit.tes_vte == state::InStock && strproduit.num_dep != ReturnedDepot; }

/// Those that the main depot may give.
Criterion given() {
    const QString month = sortKey(Clock::today()).left(6);
    return strproduit.num_dep == MainDepot && strproduit.tes_vte == state::InStock &&
           strproduit.fab_con != list::Scrapped &&
           (strproduit.dat_per == QString() || monthKey(strproduit.dat_per) >= month);
}

/// Units by depot and article.
QHash<QString, qint64> heldWhere(Database molven, const Criterion& where) {
    QHash<QString, qint64> counts;
    const auto groups = molven.countBy(strproduit, {&strproduit.num_dep, &strproduit.ref_art}, inStock() && where);
    for (auto group = groups.begin(); group != groups.end(); ++group)
        counts[keyOf(group.key().first(), group.key().last())] += group.value();
    return counts;
}

/// Of one depot, or of all but the main one.
QHash<QString, qint64> held(Database molven, const QString& depot) {
    return heldWhere(molven, depot.isEmpty() ? strproduit.num_dep != MainDepot : strproduit.num_dep == depot);
}

QHash<QString, qint64> available(Database molven) {
    QHash<QString, qint64> counts;
    const auto groups = molven.countBy(strproduit, strproduit.ref_art, given());
    for (auto group = groups.begin(); group != groups.end(); ++group) counts[group.key().toUpper()] += group.value();
    return counts;
}

/// First fields to second ones; of several records with one first value the first counts.
QHash<QString, QString> pairs(Database molven, const Table& table, const Field& key, const Field& value,
                              const Criterion& criterion = {}) {
    QHash<QString, QString> found;
    for (const QStringList& pair : molven.values(table, {&key, &value}, criterion))
        if (const auto known = found.constFind(pair[0]); known == found.constEnd() || pair[1] < *known)
            found.insert(pair[0], pair[1]);
    return found;
}

struct Endowment {
    QString depot, reference, label;
    qint64 quantity;
};

QList<Endowment> endowments(Database molven, const QString& depot) {
    QList<Endowment> all;
    const Criterion ofDepot = depot.isEmpty() ? Criterion() : strdotation.dot_dep == depot;
    for (const QStringList& one : molven.values(
             strdotation, {&strdotation.dot_dep, &strdotation.dot_ref, &strdotation.dot_lib, &strdotation.dot_qte},
             ofDepot))
        all.append({one[0], one[1], one[2], one[3].toLongLong()});
    std::sort(all.begin(), all.end(), [](const Endowment& a, const Endowment& b) {
        return std::pair(a.depot, a.reference) < std::pair(b.depot, b.reference);
    });
    return all;
}

/// Of an article in the main depot the units to give first.
QStringList firstUnits(Database molven, const QString& reference, qint64 count) {
    QStringList units;
    for (const bool isDated : {true, false}) {
        const Criterion dated = isDated ? strproduit.dat_per != QString() : strproduit.dat_per == QString();
        Order order;
        order.then(monthKey(strproduit.dat_per)).then(strproduit.pro_ann).then(strproduit.imm_art);
        const Recordset found = molven.select(strproduit, given() && dated && strproduit.ref_art == reference, order);
        for (qint64 i = 0; i < found.count() && units.size() < count; ++i)
            units.append(found.at(i)[strproduit.imm_art]);
    }
    return units;
}

[[noreturn]] void refuse(const QString& why) { throw Refusal(why, Row.rea_ref.name); }

/// The units for one shortage, as things stand under the lock.
QStringList unitsFor(Database molven, const Record& shortage, qint64 lacking) {
    const QString depot = shortage[Row.rea_dep], reference = shortage[Row.rea_ref];
    const qint64 wanted = shortage[Row.rea_don].toInteger();
    if (lacking < wanted)
        refuse(QStringLiteral("%1 : il manque maintenant %2 au dépôt %3, et non plus %4 : actualisez")
                   .arg(reference, counted(lacking, QStringLiteral("unité")), depot)
                   .arg(wanted));
    const QStringList units = firstUnits(molven, reference, wanted);
    if (units.size() < wanted)
        refuse(QStringLiteral("%1 : le dépôt principal ne peut plus donner que %2, et non %3 : actualisez")
                   .arg(reference, counted(units.size(), QStringLiteral("unité")))
                   .arg(wanted));
    return units;
}

} // namespace

QHash<QString, qint64> lackingByDepot(Database molven) {
    QHash<QString, qint64> lacking;
    const QList<Endowment> all = endowments(molven, {});
    QStringList depots;
    for (const Endowment& one : all)
        if (!depots.contains(one.depot)) depots.append(one.depot);
    if (depots.isEmpty()) return lacking;
    const QHash<QString, qint64> heldUnits = heldWhere(molven, isOneOf(strproduit.num_dep, depots));
    for (const Endowment& one : all)
        if (const qint64 under = one.quantity - heldUnits.value(keyOf(one.depot, one.reference)); under > 0)
            lacking[one.depot] += under;
    return lacking;
}

QList<Record> shortages(Database molven, const QString& depot) {
    const QHash<QString, qint64> heldUnits = held(molven, depot);
    const QHash<QString, QString> names =
        pairs(molven, strparam, strparam.num_par, strparam.lib_par, parameters::ofList(list::Depot));
    const QHash<QString, QString> clients =
        pairs(molven, strclient, strclient.clt_dep, strclient.clt_cod, strclient.clt_dep != QString());
    QHash<QString, qint64> left = available(molven);
    QList<Record> found;
    for (const Endowment& endowment : endowments(molven, depot)) {
        const qint64 holds = heldUnits.value(keyOf(endowment.depot, endowment.reference));
        const qint64 lacking = endowment.quantity - holds;
        if (lacking <= 0) continue;
        qint64& stock = left[endowment.reference.toUpper()];
        const qint64 gives = std::min(lacking, stock);
        stock -= gives;
        Record row(Row);
        row[Row.rea_dep] = endowment.depot;
        row[Row.rea_nom] = names.value(endowment.depot);
        row[Row.rea_clt] = clients.value(endowment.depot);
        row[Row.rea_ref] = endowment.reference;
        row[Row.rea_lib] = endowment.label;
        const std::pair<const Field*, qint64> numbers[] = {{&Row.rea_dot, endowment.quantity},
                                                           {&Row.rea_stk, holds},
                                                           {&Row.rea_man, lacking},
                                                           {&Row.rea_don, gives},
                                                           {&Row.rea_ach, lacking - gives}};
        for (const auto& [field, number] : numbers) row.set(*field, QString::number(number));
        found.append(row);
    }
    return found;
}

QList<Record> purchases(Database molven, const QList<Record>& shortages) {
    QMap<QString, Record> byArticle;
    for (const Record& row : shortages) {
        if (row[Row.rea_ach].isZero()) continue;
        const QString reference = row[Row.rea_ref];
        if (!byArticle.contains(reference)) {
            Record purchase(strachat);
            const Record article = articles::find(molven, reference).value_or(Record(strarticle));
            const QString supplier = article[strarticle.art_fou];
            const auto party = parties::findSupplier(molven, supplier);
            purchase[strachat.ach_fou] = supplier;
            purchase[strachat.ach_nom] = party ? party->value(strfournis.fou_nom) : QString();
            purchase[strachat.ach_rfo] = article[strarticle.art_rfou];
            purchase[strachat.ach_ref] = reference;
            purchase[strachat.ach_lib] = row[Row.rea_lib];
            byArticle.insert(reference, purchase);
        }
        Record& purchase = byArticle.find(reference).value();
        purchase[strachat.ach_qte] = purchase[strachat.ach_qte] + row[Row.rea_ach];
    }
    QList<Record> all = byArticle.values();
    std::stable_sort(all.begin(), all.end(),
                     [](const Record& a, const Record& b) { return a[strachat.ach_fou] < b[strachat.ach_fou]; });
    return all;
}

Record write(SalesBook& notes, const QList<Record>& shortagesOfDepot) {
    const Record& first = shortagesOfDepot.first();
    const QString depot = first[Row.rea_dep], client = first[Row.rea_clt];
    if (client.isEmpty()) refuse(QStringLiteral("Le dépôt %1 n'est celui d'aucun client").arg(depot));
    Transaction transaction(notes.workspace, QStringLiteral("Réassort"));
    QHash<QString, qint64> lacking = held(notes.molven, depot); // made negative, then counted up to what is to be held
    for (qint64& units : lacking) units = -units;
    for (const Endowment& one : endowments(notes.molven, depot)) lacking[keyOf(depot, one.reference)] += one.quantity;
    QStringList units;
    for (const Record& row : shortagesOfDepot)
        if (row[Row.rea_don] > Decimal())
            units += unitsFor(notes.molven, row, std::max<qint64>(0, lacking.value(keyOf(depot, row[Row.rea_ref]))));
    if (units.isEmpty()) refuse(QStringLiteral("Dépôt %1 : le dépôt principal ne peut rien donner").arg(depot));
    Record header = documents::blank(notes, client);
    header[strbtre.fac_depd] = MainDepot;
    header[strbtre.fac_depa] = depot;
    const Record written = transfer_notes::write(notes, header, units.mid(0, numbering::LastLine));
    transaction.commit();
    return written;
}

} // namespace molven::replenishment

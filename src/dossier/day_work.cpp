#include "dossier/day_work.h"

#include "data/dates.h"
#include "data/errors.h"
#include "dossier/upkeep.h"
#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/replenishment.h"
#include "stock/set_overview.h"

#include <algorithm>

namespace molven::day_work {

namespace {

/// The oldest expiry that is looked for: an index finds months, one by one, but not what lies before one.
constexpr int YearsBack = 20;

QString monthKeyOf(const QDate& date) { return sortKey(date).left(6); }

/// Old documents may have none.
QStringList openStates() { return {documents::Open, QString()}; }

Waiting waiting(Database file, const DocumentHeaders& table) {
    Waiting found;
    for (const Summary& all : file.summary(table, {}, {&table.fac_ht}, stillOpen(table))) {
        found.count = all.count;
        found.amount = all.sums.first();
    }
    for (const QString& state : openStates()) { // an index has the days of one state in order
        const auto first = file.find(table, table.fac_cpt == state && table.tri_datf > QString(), table.tri_datf);
        const QString day = first ? first->value(table.tri_datf) : QString();
        if (!day.isEmpty() && (found.oldest.isEmpty() || day < found.oldest)) found.oldest = day;
    }
    return found;
}

QStringList months(const QDate& first, const QDate& last) {
    QStringList names;
    for (QDate month = first; month <= last; month = month.addMonths(1)) names.append(monthText(month));
    return names;
}

QList<ExpiringDepot> expiring(Database molven, const QDate& today) {
    const QDate month(today.year(), today.month(), 1);
    const QStringList past = months(month.addYears(-YearsBack), month.addMonths(-1));
    const QStringList soon = months(month, month.addMonths(MonthsAhead));
    const auto counts = molven.countBy(strproduit, {&strproduit.num_dep, &strproduit.dat_per},
                                       strproduit.tes_vte == state::InStock && strproduit.num_dep != ReturnedDepot &&
                                           isOneOf(strproduit.dat_per, past + soon));
    QMap<QString, ExpiringDepot> byDepot;
    for (auto count = counts.begin(); count != counts.end(); ++count) {
        ExpiringDepot& depot = byDepot[count.key().first()];
        (soon.contains(count.key().last()) ? depot.soon : depot.past) += count.value();
    }
    QList<ExpiringDepot> found;
    for (auto one = byDepot.begin(); one != byDepot.end(); ++one) {
        const auto known = parameters::find(molven, list::Depot, one.key());
        found.append({one.key(), known ? known->value(strparam.lib_par) : QString(), one->past, one->soon});
    }
    std::stable_partition(found.begin(), found.end(), [](const auto& depot) { return depot.depot == MainDepot; });
    return found;
}

/// A file of one of the folders, where it is there.
std::optional<Database> openIfThere(Workspace& workspace, const QString& path) {
    return workspace.has(path) ? std::optional<Database>(workspace.open(path)) : std::nullopt;
}

void countSets(Figures& figures, Database molven, Database ancillaire) {
    for (const Record& set : set_overview::rows(molven, ancillaire)) {
        figures.setsOut += set[stretatanc.stk_num_dep] != SetDepot;
        figures.setsPartial += !set_overview::isComplete(set);
    }
}

void countReceived(Figures& figures, Database molven, const QDate& today) {
    const QDate since = firstRecentDay(today);
    // The first digits of a number are the month of its receipt, which an index finds.
    const Criterion recent = strproduit.pro_ann == QStringLiteral("20") &&
                             strproduit.imm_art >= since.toString(QStringLiteral("yyMM")) &&
                             strproduit.tri_liv >= sortKey(since) && strproduit.tri_liv <= sortKey(today);
    figures.received = molven.count(strproduit, recent);
    const auto unit = [&](const Order& order) {
        const auto found = molven.find(strproduit, recent, order);
        return found ? found->value(strproduit.imm_art) : QString();
    };
    figures.firstReceived = unit(strproduit.imm_art);
    figures.lastReceived = unit(Order::descending(strproduit.imm_art));
}

void countWritten(Figures& figures, const Session& session, Database vente, const std::optional<Database>& proformas,
                  const QDate& today) {
    for (const DocumentKind& kind : documentKinds()) {
        if (kind.isSecondBook()) continue;
        if (kind.isProforma() && !proformas) continue;
        const DocumentKind& shown = kind.isProforma() ? proformaKind(session.rules()) : kind;
        Database file = kind.isProforma() ? *proformas : vente;
        if (const qint64 count = file.count(kind.headers, writtenRecently(kind, today)))
            figures.written.append({shown, count});
    }
}

/// By month, the first one first.
QList<Decimal> turnover(const QList<Database>& files, const Session& session, const QDate& first) {
    QHash<QString, Decimal> byMonth;
    const Criterion own = session.spe_mon.isEmpty() ? Criterion() : isOneOf(strface.fac_mon, {session.spe_mon, {}});
    for (Database file : files)
        for (const Summary& day : file.summary(strface, {&strface.tri_datf}, {&strface.fac_ht},
                                               strface.tri_datf >= sortKey(first) &&
                                                   strface.tri_datf < sortKey(first.addMonths(MonthsShown)) && own))
            byMonth[day.group.first().left(6)] += day.sums.first();
    QList<Decimal> amounts;
    for (int i = 0; i < MonthsShown; ++i) amounts.append(byMonth.value(monthKeyOf(first.addMonths(i))));
    return amounts;
}

} // namespace

QDate firstRecentDay(const QDate& today) { return today.addDays(1 - RecentDays); }

QString lastMonthAhead(const QDate& today) { return monthText(today.addMonths(MonthsAhead)); }

Criterion stillOpen(const DocumentHeaders& table) { return isOneOf(table.fac_cpt, openStates()); }

Criterion writtenRecently(const DocumentKind& kind, const QDate& today) {
    const Text& day = kind.headers.tri_datf;
    return day >= sortKey(firstRecentDay(today)) && day <= sortKey(today) && documents::ofKind(kind);
}

Figures count(const Session& session, const QDate& today, const std::function<bool()>& goesOn) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    const auto proformas = openIfThere(workspace, session.path(DataFile::Proforma));
    const auto historic = openIfThere(workspace, session.historic());
    const auto ancillaire =
        session.rules().hasAncillarySets() ? openIfThere(workspace, session.path(DataFile::Ancillaire)) : std::nullopt;
    const auto mayGoOn = [&goesOn] { return !goesOn || goesOn(); };
    const Watch watch(workspace, mayGoOn);
    Figures figures;
    const QDate month(today.year(), today.month(), 1);
    const QList<Database> sales = historic ? QList<Database>{vente, *historic} : QList<Database>{vente};
    const std::function<void()> steps[] = {
        [&] { figures.toInvoice = waiting(vente, strlive); },
        [&] { figures.proformas = proformas ? waiting(*proformas, strface) : Waiting(); },
        [&] { figures.expiring = expiring(molven, today); },
        [&] {
            for (const qint64 lacking : replenishment::lackingByDepot(molven)) {
                ++figures.depotsUnder;
                figures.unitsLacking += lacking;
            }
        },
        [&] {
            if (ancillaire) countSets(figures, molven, *ancillaire);
        },
        [&] {
            figures.withoutPatient =
                molven.count(strproduit, strproduit.reg_pat == QString() && strproduit.tes_vte == state::Sold);
        },
        [&] { countReceived(figures, molven, today); },
        [&] { countWritten(figures, session, vente, proformas, today); },
        [&] { figures.backup = upkeep::lastBackup(session); },
        [&] { figures.turnover = turnover(sales, session, month.addMonths(1 - MonthsShown)); },
        [&] { figures.turnoverAgo = turnover(sales, session, month.addMonths(1 - 2 * MonthsShown)); },
    };
    for (const auto& step : steps) {
        if (!mayGoOn()) throw Refusal(QStringLiteral("Comptage abandonné"));
        step();
    }
    return figures;
}

Changes::Changes(const Session& session) {
    for (const DataFile file : {DataFile::Molven, DataFile::Vente, DataFile::Proforma, DataFile::Ancillaire})
        if (const auto opened = openIfThere(workspace_, session.path(file))) files_.append(*opened);
    seen_ = marks();
}

/// Each mark only grows.
qint64 Changes::marks() {
    qint64 sum = 0;
    for (Database& file : files_) sum += file.changesElsewhere();
    return sum;
}

bool Changes::happened() {
    const qint64 now = marks();
    return std::exchange(seen_, now) != now;
}

} // namespace molven::day_work

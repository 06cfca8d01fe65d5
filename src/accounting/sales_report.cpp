#include "accounting/sales_report.h"

#include "data/collation.h"
#include "data/format.h"
#include "data/joined.h"
#include "reference/articles.h"
#include "reference/code_kinds.h"
#include "sales/document_tables.h"
#include "sales/totals.h"

#include <algorithm>
#include <map>

namespace molven::statistics {

namespace {

struct Asked {
    QString Query::*value;
    Text SalesStatistics::*field;
    const char* words;
    enum class Match { Same, AtLeast, AtMost } match;
    int digits = 0; ///< of a code padded with zeros
};

const QList<Asked>& criteria() {
    using Match = Asked::Match;
    using S = SalesStatistics;
    static const QList<Asked> all{{&Query::firstClient, &S::sta_clt, "Client >= ", Match::AtLeast, 6},
                                  {&Query::lastClient, &S::sta_clt, "Client <= ", Match::AtMost, 6},
                                  {&Query::clientFamily, &S::sta_cdf, "Famille client ", Match::Same},
                                  {&Query::firstArticle, &S::sta_ref, "Article >= ", Match::AtLeast},
                                  {&Query::lastArticle, &S::sta_ref, "Article <= ", Match::AtMost},
                                  {&Query::articleFamily, &S::sta_fam, "Famille article ", Match::Same},
                                  {&Query::supplier, &S::sta_fou, "Fournisseur ", Match::Same, 6},
                                  {&Query::representative, &S::sta_rep, "Représentant ", Match::Same},
                                  {&Query::surgeon, &S::sta_chr, "Chirurgien ", Match::Same},
                                  {&Query::department, &S::sta_dpt, "Département ", Match::Same, 2}};
    return all;
}

QString upper(const QString& code) { return code.toUpper(); }

QStringList upper(QStringList codes) {
    for (QString& code : codes) code = code.toUpper();
    return codes;
}

} // namespace

Criterion Query::criterion(const SalesStatistics& lines) const {
    Criterion all;
    for (const Asked& one : criteria()) {
        const QString value = padded(this->*one.value, one.digits);
        if (value.isEmpty()) continue;
        const Text& field = lines.*one.field;
        all = all && (one.match == Asked::Match::AtLeast  ? field >= value
                      : one.match == Asked::Match::AtMost ? field <= value
                                                          : field == value);
    }
    return all;
}

QString Query::words() const {
    QStringList parts{period.words().trimmed()};
    if (compared) parts.append(QStringLiteral("comparé :") + compared->words());
    for (const Asked& one : criteria())
        if (const QString value = padded(this->*one.value, one.digits); !value.isEmpty())
            parts.append(QString::fromUtf8(one.words) + value);
    return parts.join(QStringLiteral("   "));
}

Figures& Figures::operator+=(const Figures& other) {
    quantity += other.quantity;
    gross += other.gross;
    net += other.net;
    purchase += other.purchase;
    comparedNet += other.comparedNet;
    return *this;
}

Decimal Figures::marginPercent() const { return net.isZero() ? Decimal() : (margin() * Decimal(100) / net).rounded(2); }

void prepare(sales_statistics::Files files, const Query& query) {
    sales_statistics::regenerate(files, statd, query.period);
    if (query.compared)
        sales_statistics::fill(files, statdc, query.compared->covers(sales_statistics::ofHeader(strface.tri_datf)));
}

SalesReport::SalesReport(sales_statistics::Files files, const ReportKind& kind, const Query& query)
    : files_(std::move(files)), kind_(kind), query_(query) {
    for (const Key& key : kind_.keys) {
        names_.append(QHash<QString, QString>());
        if (!key.names) continue;
        const Criterion ofList = key.names->list ? *key.names->list == key.names->letter : Criterion();
        Database file = key.names->file == DataFile::Compta ? files_.compta : files_.molven;
        const auto words = file.valuesBy(*key.names->table, *key.names->key, *key.names->words, ofList);
        for (auto one = words.begin(); one != words.end(); ++one) names_.last().insert(upper(one.key()), one.value());
    }
    if (kind_.isByMonth()) addMonthsWithoutSales();
    read(statd, &Figures::net, months_);
    if (kind_.isByAccount()) addCarriage(query_.period, &Figures::net);
    if (!query_.compared) return;
    read(statdc, &Figures::comparedNet, comparedMonths_);
    if (kind_.isByAccount()) addCarriage(*query_.compared, &Figures::comparedNet);
}

void SalesReport::addMonthsWithoutSales() {
    for (int month = 1; month <= 12; ++month) add({QString::number(month).rightJustified(2, u'0')}, {});
}

void SalesReport::add(const QStringList& keys, const Figures& figures) {
    const QStringList folded = upper(keys);
    const auto known = places_.constFind(folded);
    if (known == places_.constEnd()) {
        places_.insert(folded, groups_.size());
        groups_.append({keys, figures});
    } else {
        groups_[*known].figures += figures;
    }
    total_ += figures;
}

void SalesReport::read(const SalesStatistics& table, Decimal Figures::*net,
                       QList<std::pair<QString, Decimal>>& months) {
    QList<const Field*> groups;
    for (const Key& key : kind_.keys) groups.append(&(table.*key.code));
    const Criterion asked = query_.criterion(table);
    const bool isWhole = net == &Figures::net;
    for (const Summary& one : files_.tri.summary(
             table, groups, {&table.sta_net, &table.sta_qte, &table.sta_brut, &table.sta_achat}, asked)) {
        Figures figures;
        figures.*net = one.sums[0];
        if (isWhole) figures.quantity = one.sums[1], figures.gross = one.sums[2], figures.purchase = one.sums[3];
        QStringList keys = one.group;
        if (kind_.isByMonth()) keys.first() = keys.first().right(2);
        add(keys, figures);
    }
    for (const Summary& one : files_.tri.summary(table, {&table.sta_mac}, {&table.sta_net}, asked))
        months.append({one.group.first(), one.sums.first()});
}

/// Carriage and exempt amounts stand on no line. Criteria that only lines can meet leave them out.
void SalesReport::addCarriage(const Period& period, Decimal Figures::*net) {
    if (!query_.criterion(statd).always()) return;
    const DocumentHeaders& h = strface;
    const Criterion own = h.fac_mon == QString() || h.fac_mon == files_.currency;
    for (Database file : {files_.vente, files_.historic})
        for (const Summary& one : file.summary(h, {}, {&h.fac_port, &h.fac_exo}, period.covers(h.tri_datf) && own))
            for (const auto& [keys, amount] :
                 {std::pair(QStringList{files_.carriage, totals::CarriageVat}, one.sums[0]),
                  std::pair(QStringList{articles::blank().value(strarticle.art_cpt), QString()}, one.sums[1])}) {
                if (amount.isZero()) continue;
                Figures figures;
                figures.*net = amount;
                if (net == &Figures::net) figures.gross = amount;
                add(keys, figures);
            }
}

QString SalesReport::nameOf(qsizetype level, const QString& code) const {
    const Key& key = kind_.keys[level];
    return key.nameOf ? key.nameOf(code) : names_[level].value(upper(code));
}

Record SalesReport::rowOf(const QStringList& keys, const Figures& figures) const {
    const auto& s = strstat;
    Record row(s);
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const Text& field = s.*kind_.keys[i].code;
        row.set(field, keys[i].left(field.size));
        const QString name = nameOf(i, keys[i]);
        row[s.sta_lib] = name.left(s.sta_lib.size);
        if (kind_.keys[i].names == &codes::Client) row[s.sta_nom] = name.left(s.sta_nom.size);
        if (kind_.keys[i].names == &codes::Article) row[s.sta_li1] = name.left(s.sta_li1.size);
    }
    if (kind_.isByAccount()) row[s.sta_imp] = row[s.sta_vte];
    row[s.sta_qte] = figures.quantity;
    row[s.sta_brut] = figures.gross;
    row[s.sta_net] = figures.net;
    row[s.sta_achat] = figures.purchase;
    row[s.sta_marge] = figures.margin();
    row[s.sta_pourc] = figures.marginPercent();
    row[s.sta_part] = total_.net.isZero() ? Decimal() : (figures.net * Decimal(100) / total_.net).rounded(2);
    if (!query_.compared) return row;
    row[s.sta_net2] = figures.comparedNet;
    if (!figures.comparedNet.isZero()) {
        const Decimal base = figures.comparedNet < Decimal() ? -figures.comparedNet : figures.comparedNet;
        row[s.sta_evol] = ((figures.net - figures.comparedNet) * Decimal(100) / base).rounded(2);
    }
    return row;
}

QList<Record> SalesReport::level(const QStringList& path, Sorting sorting) const {
    const QStringList above = upper(path);
    std::vector<Group> found;
    QHash<QString, std::size_t> places;
    for (const Group& group : groups_) {
        if (upper(group.keys.first(path.size())) != above) continue;
        const QString own = upper(group.keys[path.size()]);
        if (const auto known = places.constFind(own); known != places.constEnd()) {
            found[*known].figures += group.figures;
            continue;
        }
        places.insert(own, found.size());
        found.push_back({group.keys.first(path.size() + 1), group.figures});
    }
    std::stable_sort(found.begin(), found.end(), [&](const Group& a, const Group& b) {
        if (sorting == Sorting::ByAmount && a.figures.net != b.figures.net) return a.figures.net > b.figures.net;
        return collation::code(a.keys.last(), b.keys.last()) < 0;
    });
    QList<Record> rows;
    for (const Group& group : found) rows.append(rowOf(group.keys, group.figures));
    return rows;
}

QList<Record> SalesReport::rows(Sorting sorting) const {
    QList<Record> rows;
    visit(sorting, [&rows](const Record& row) { rows.append(row); });
    return rows;
}

void SalesReport::visit(Sorting sorting, const std::function<void(const Record&)>& take) const {
    // The place of each group at each level, so that groups of one parent stand together in the parents' order.
    QList<QHash<QStringList, Figures>> sums(kind_.keys.size());
    for (const Group& group : groups_)
        for (qsizetype depth = 0; depth < kind_.keys.size(); ++depth)
            sums[depth][upper(group.keys.first(depth + 1))] += group.figures;
    QList<const Group*> ordered;
    for (const Group& group : groups_) ordered.append(&group);
    std::stable_sort(ordered.begin(), ordered.end(), [&](const Group* a, const Group* b) {
        for (qsizetype depth = 0; depth < kind_.keys.size(); ++depth) {
            const int byCode = collation::code(a->keys[depth], b->keys[depth]);
            if (byCode == 0) continue;
            if (sorting == Sorting::ByKey) return byCode < 0;
            const Decimal one = sums[depth].value(upper(a->keys.first(depth + 1))).net,
                          other = sums[depth].value(upper(b->keys.first(depth + 1))).net;
            return one != other ? one > other : byCode < 0;
        }
        return false;
    });
    for (const Group* group : ordered) take(rowOf(group->keys, group->figures));
}

Recordset SalesReport::lines(const QStringList& path, const Criterion& filter, const Order& order) const {
    Criterion asked = query_.criterion(statd);
    for (qsizetype i = 0; i < path.size(); ++i) {
        const Text& field = statd.*kind_.keys[i].code;
        asked = asked && (kind_.isByMonth() ? tail(field, 5) == path[i] : field == path[i]);
    }
    Database tri = files_.tri;
    const Order byDate{statd.sta_datf, statd.sta_aa, statd.sta_no, statd.sta_lg};
    return tri.select(statd, asked && filter, order.orElse(byDate));
}

} // namespace molven::statistics

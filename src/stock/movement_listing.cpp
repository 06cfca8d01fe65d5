#include "stock/movement_listing.h"

#include "data/collation.h"
#include "data/dates.h"
#include "data/require.h"
#include "reference/articles.h"

#include <algorithm>

namespace molven {

void MovementTotals::add(const Record& listed) {
    const QString kind = listed[strlistemvt.eta_stk];
    Decimal& total = kind == movement::Inventory ? inventory : kind == movement::Entry ? entries : exits;
    total += listed[strlistemvt.qte_stk];
}

namespace movement_listing {

namespace {

/// The key of a bound that may be empty.
QString boundKey(const QString& date, const char* refused, const char* control) {
    if (isEmptyDate(date)) return {};
    if (!dateFromText(date).isValid()) throw Refusal(QString::fromUtf8(refused), QString::fromLatin1(control));
    return sortKey(date);
}

Criterion ofReference(Database molven, const QString& reference) {
    const QString control = QStringLiteral("txtref");
    if (reference.isEmpty()) throw Refusal(QStringLiteral("Veuillez saisir une référence"), control);
    if (reference.endsWith(u'*')) return startsWith(strmvtstk.ref_stk, reference.chopped(1));
    if (!articles::find(molven, reference)) throw Refusal(QStringLiteral("Référence Inconnue"), control);
    return strmvtstk.ref_stk == reference;
}

Criterion criterionOf(Database molven, const MovementQuery& query) {
    Criterion asked = ofReference(molven, query.reference.trimmed());
    const QString from = boundKey(query.from, "date début non valide", "Mskdatdeb");
    const QString to = boundKey(query.to, "date fin non valide", "Mskdatfin");
    if (!from.isEmpty() && !to.isEmpty() && to < from)
        throw Refusal(QStringLiteral("date fin < date début"), QStringLiteral("Mskdatfin"));
    if (!from.isEmpty()) asked = asked && strmvtstk.tri_stk >= from;
    if (!to.isEmpty()) asked = asked && strmvtstk.tri_stk <= to;
    if (!query.kind.isEmpty()) asked = asked && strmvtstk.eta_stk == query.kind;
    return asked;
}

} // namespace

QList<Record> find(MovementFiles files, const MovementQuery& query) {
    const Criterion asked = criterionOf(files.molven, query);
    const auto labels = query.reference.trimmed().endsWith(u'*')
                            ? files.molven.valuesBy(strarticle, strarticle.art_ref, strarticle.art_li1,
                                                    strarticle.art_aig == follow_up::ByMovements)
                            : files.molven.valuesBy(strarticle, strarticle.art_ref, strarticle.art_li1,
                                                    strarticle.art_ref == query.reference.trimmed());
    QList<Record> found;
    for (Database file : files.all())
        for (const Record& movement : file.select(strmvtstk, asked)) {
            Record listed(strlistemvt);
            listed.copyFrom(movement);
            listed[strlistemvt.art_li1] = labels.value(movement[strmvtstk.ref_stk]);
            found.append(listed);
        }
    std::stable_sort(found.begin(), found.end(), [](const Record& a, const Record& b) {
        const int order = collation::compare(strlistemvt.ref_stk, a[strlistemvt.ref_stk], b[strlistemvt.ref_stk]);
        return order != 0 ? order < 0 : a[strlistemvt.tri_stk] < b[strlistemvt.tri_stk];
    });
    return found;
}

QString words(const MovementQuery& query) {
    QStringList parts{QStringLiteral("Référence : ") +
                      (query.reference == u"*" ? QStringLiteral("toutes") : query.reference)};
    if (!isEmptyDate(query.from)) parts.append(QStringLiteral("du : ") + query.from);
    if (!isEmptyDate(query.to)) parts.append(QStringLiteral("au : ") + query.to);
    if (!query.kind.isEmpty()) parts.append(movements::kindName(query.kind) + u's');
    return parts.join(QStringLiteral("   "));
}

} // namespace movement_listing
} // namespace molven

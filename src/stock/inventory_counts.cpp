#include "stock/inventory_counts.h"

#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "stock/unit_locks.h"

#include <QUuid>

namespace molven::inventory_counts {

namespace {

const QList<const Number*>& places() {
    static const QList<const Number*> fields{&strarticle.stk1_art, &strarticle.stk2_art, &strarticle.stk3_art};
    return fields;
}

Decimal countedOf(const Record& article) {
    Decimal sum;
    for (const Number* place : places()) sum += article[*place];
    return sum;
}

Record countsOf(const Record& article) {
    Record counts(strcomptage);
    counts.copyFrom(article);
    bool isCounted = false;
    for (const Number* place : places()) isCounted = isCounted || !article.isNull(*place);
    if (!isCounted) return counts;
    counts[strcomptage.counted] = countedOf(article);
    counts[strcomptage.difference] = countedOf(article) - article[strarticle.art_stk];
    return counts;
}

QList<Assignment> assignments(const Record& counts) {
    QList<Assignment> values;
    for (const Number* place : places()) values.append({*place, counts.value(*counts.table().field(place->name))});
    return values;
}

void requireAsRead(const Record& article, const Record& asRead) {
    for (const Number* place : places())
        if (article.value(*place) != asRead.value(*asRead.table().field(place->name)))
            throw Refusal(QStringLiteral("L'article %1 a été compté sur un autre poste : %2 au lieu de %3")
                              .arg(article[strarticle.art_ref], shown(article[*place]),
                                   shown(Decimal::fromText(asRead.value(*asRead.table().field(place->name))))),
                          place->name);
}

Record movementOf(const Record& article, const CompanyRules& rules, const QString& date) {
    const auto& m = strmvtstk;
    Record movement(m);
    movement[m.ref_stk] = article[strarticle.art_ref];
    movement[m.col_stk] = article[strarticle.col_art];
    movement[m.eta_stk] = movement::Inventory;
    movement[m.qte_stk] = countedOf(article);
    movement[m.pri_stk] =
        rules.valuesInventoryByOwnPrice() ? article[strarticle.ta17_art] : article[strarticle.art_pam];
    movement[m.com_stk] = QStringLiteral("INVENTAIRE AU ") + date;
    movement[m.dat_stk] = date;
    movement[m.tri_stk] = sortKey(date);
    movement[m.uid_stk] = QUuid::createUuid().toString(QUuid::Id128);
    return movement;
}

} // namespace

QList<Record> all(Database molven) {
    QList<Record> counts;
    for (const Record& article :
         molven.select(strarticle, strarticle.art_aig == follow_up::ByMovements, strarticle.art_ref))
        counts.append(countsOf(article));
    return counts;
}

void save(Database molven, const Record& asRead, const Record& counts) {
    const Record& read = counts;
    for (const Number* place : places()) {
        const Decimal quantity = Decimal::fromText(read.value(*strcomptage.field(place->name)));
        require(quantity >= Decimal(0), "Taper une valeur positive !!", *place);
        require(quantity < Decimal(10'000'000) && quantity == quantity.rounded(2), "Quantité incorrecte", *place);
    }
    const QString takesPart = read[strcomptage.stk_art];
    require(takesPart.isEmpty() || takesPart == u"O" || takesPart == u"N", "Taper O ou N !!", strcomptage.stk_art);
    const Locks locks = Locks::of({unit_locks::article(read[strcomptage.art_ref])});
    Transaction::run(molven.workspace(), QStringLiteral("Comptage d'inventaire"), locks, [&] {
        const Record article = movements::requireArticle(molven, read[strcomptage.art_ref]);
        requireAsRead(article, asRead);
        molven.update(strarticle, assignments(counts) + QList<Assignment>{{strarticle.stk_art, takesPart}},
                      strarticle.art_ref == article[strarticle.art_ref]);
    });
}

void checkDate(const QString& date) {
    if (isEmptyDate(date)) throw Refusal(QStringLiteral("saisir une date"), QStringLiteral("Mskdatfin"));
    if (!dateFromText(date).isValid()) throw Refusal(QStringLiteral("date invalide"), QStringLiteral("Mskdatfin"));
}

qint64 writeInventory(MovementFiles files, const CompanyRules& rules, const QString& date) {
    checkDate(date);
    Transaction transaction(files.molven.workspace(), QStringLiteral("Inventaire"));
    Criterion counted = strarticle.stk1_art != Decimal(0);
    for (const Number* place : places()) counted = counted || *place != Decimal(0);
    const Criterion takingPart =
        strarticle.art_aig == follow_up::ByMovements && strarticle.stk_art != QStringLiteral("N");
    qint64 written = 0;
    for (const Record& article : files.molven.select(strarticle, takingPart && counted, strarticle.art_ref)) {
        if (countedOf(article).isZero()) continue;
        files.stocks.insert(movementOf(article, rules, date));
        ++written;
    }
    if (written == 0) throw Refusal(QStringLiteral("Aucun article"));
    QList<Assignment> cleared;
    for (const Number* place : places()) cleared.append({*place, QString()});
    files.molven.update(strarticle, cleared, takingPart);
    transaction.commit();
    return written;
}

} // namespace molven::inventory_counts

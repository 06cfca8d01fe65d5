#include "stock/stock_recount.h"

#include "reference/articles.h"
#include "stock/unit_tables.h"
#include "stock/units.h"

namespace molven::stock_recount {

namespace {

/// The units that are not invoiced, by reference in upper case.
template <class Value>
QHash<QString, Value> byReference(const QHash<QString, Value>& found) {
    QHash<QString, Value> merged;
    for (auto one = found.begin(); one != found.end(); ++one) merged[one.key().toUpper()] += one.value();
    return merged;
}

/// What an article must hold of its stock.
using Wanted = std::function<Decimal(const QString& reference, const Decimal& held)>;

/// Gives one field of the followed articles what it must hold; the references of those that held something else are
/// added. False when it was stopped.
bool put(Database molven, const Number& field, const Wanted& wanted, const Progress& progress, QSet<QString>& changed) {
    const auto held = molven.valuesBy(strarticle, strarticle.art_ref, field, strarticle.art_aig == follow_up::ByUnit);
    int done = 0;
    for (auto article = held.begin(); article != held.end(); ++article) {
        if (!progress(done++, static_cast<int>(held.size()))) return false;
        const Decimal before = Decimal::fromText(article.value());
        const Decimal after = wanted(article.key().toUpper(), before);
        if (before == after && !article.value().isEmpty()) continue;
        molven.update(strarticle, {{field, after.toString()}}, strarticle.art_ref == article.key());
        changed.insert(article.key());
    }
    return true;
}

const Criterion& notInvoiced() {
    static const Criterion criterion = strproduit.tes_vte != state::Sold;
    return criterion;
}

std::optional<Result> run(Database molven, const Progress& progress, const std::optional<int>& averageDecimals) {
    Transaction transaction(molven.workspace(), QStringLiteral("Recomptage du stock"));
    const auto counts = byReference(molven.countBy(strproduit, strproduit.ref_art, notInvoiced()));
    const auto counted = [&counts](const QString& reference) {
        return Decimal(static_cast<long long>(counts.value(reference)));
    };
    QSet<QString> changed;
    if (!put(
            molven, strarticle.art_stk, [&](const QString& reference, const Decimal&) { return counted(reference); },
            progress, changed))
        return std::nullopt;
    if (averageDecimals) {
        const auto values =
            byReference(molven.sumBy(strproduit, strproduit.ref_art, strproduit.pro_pac, notInvoiced()));
        const Wanted average = [&](const QString& reference, const Decimal& held) {
            const Decimal stock = counted(reference);
            return stock.isZero() ? held : (values.value(reference) / stock).rounded(*averageDecimals);
        };
        if (!put(molven, strarticle.art_pam, average, progress, changed)) return std::nullopt;
    }
    const qint64 articles = molven.count(strarticle, strarticle.art_aig == follow_up::ByUnit);
    transaction.commit();
    return Result{articles, changed.size()};
}

} // namespace

std::optional<Result> count(Database molven, const Progress& progress) { return run(molven, progress, std::nullopt); }

std::optional<Result> countAndAverage(Database molven, const CompanyRules& rules, const Progress& progress) {
    return run(molven, progress, rules.purchasePriceDecimals());
}

} // namespace molven::stock_recount

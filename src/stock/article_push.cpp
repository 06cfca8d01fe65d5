#include "stock/article_push.h"

#include "data/collation.h"
#include "data/errors.h"
#include "reference/articles.h"
#include "stock/unit_tables.h"
#include "stock/units.h"

namespace molven::article_push {

namespace {

Criterion notSoldIn(const Range& range) {
    const auto& u = strproduit;
    const QString first = range.first.trimmed(), last = range.last.trimmed();
    if (!first.isEmpty() && !last.isEmpty() && collation::compare(u.ref_art, last, first) < 0)
        throw Refusal(QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("txtfin"));
    Criterion units = u.tes_vte != state::Sold;
    if (!first.isEmpty()) units = units && u.ref_art >= first;
    if (!last.isEmpty()) units = units && u.ref_art <= last;
    return units;
}

/// What the delivery note of a unit decides.
bool comesFromNote(const Field& field) {
    return &field == &strproduit.pro_vte || &field == &strproduit.pro_tar || &field == &strproduit.pro_lpp;
}

} // namespace

qint64 count(Database molven, const Range& range) { return molven.count(strproduit, notSoldIn(range)); }

std::optional<qint64> run(Database molven, const Range& range, const Progress& progress) {
    const auto& u = strproduit;
    const Criterion units = notSoldIn(range);
    Transaction transaction(molven.workspace(), QStringLiteral("Produits d'après les articles"));
    const QStringList references = molven.countBy(u, u.ref_art, units).keys();
    qint64 written = 0;
    int done = 0;
    for (const QString& reference : references) {
        if (!progress(done++, static_cast<int>(references.size()))) return std::nullopt;
        const auto article = articles::find(molven, reference);
        if (!article) continue;
        const Criterion ofArticle = units && u.ref_art == reference;
        const QList<Assignment> all = units::fromArticle(*article);
        QList<Assignment> notOfNote;
        for (const Assignment& one : all)
            if (!comesFromNote(one.field)) notOfNote.append(one);
        written += molven.update(u, all, ofArticle && u.tes_vte != state::Delivered);
        written += molven.update(u, notOfNote, ofArticle && u.tes_vte == state::Delivered);
    }
    transaction.commit();
    return written;
}

} // namespace molven::article_push

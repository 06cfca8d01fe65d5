#include "dossier/family_renaming.h"

#include "data/code_kind.h"
#include "data/errors.h"
#include "dossier/references.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"

#include <algorithm>

namespace molven::family_renaming {

namespace {

/// The lists that the family of an article may stand in.
const QList<const CodeKind*>& kinds() {
    static const QList<const CodeKind*> all{&codes::ArticleFamily, &codes::AncillaryFamily};
    return all;
}

bool isIn(Database molven, const CodeKind& kind, const QString& code) {
    return parameters::find(molven, kind.letter, code).has_value();
}

void requireFree(Database molven, const CodeKind& kind, const QString& code) {
    const QString to = QStringLiteral("txtnouv");
    if (isIn(molven, kind, code) || kind.besides.contains(code, Qt::CaseInsensitive))
        throw Refusal(QStringLiteral("Ce code existe déjà"), to);
    if (molven.count(strparrem, strparrem.rem_art == code) > 0)
        throw Refusal(QStringLiteral("Ce code existe déjà dans les remises"), to);
    if (molven.count(strtauxrep, strtauxrep.c_ref == code) > 0)
        throw Refusal(QStringLiteral("Ce code existe déjà dans les commissions"), to);
}

/// Every field that names a family of this kind.
void renameReferences(references::Files& files, const CodeKind& kind, const QString& code, const QString& newCode) {
    for (const DataFile file : {DataFile::Molven, DataFile::Ancillaire})
        for (const Table* table : tablesOf(file))
            for (const Field* field : table->fields())
                for (const references::Reference& reference : references::referencesOf(*field))
                    if (&reference.kind == &kind)
                        files[file].update(*table, {{*field, newCode}}, reference.where && *field == code);
}

/// A rate and the category of the articles that it applies to bear one code.
void renameCategory(Database molven, const Text& rate, const Table& rates, const Text& category, const QString& code,
                    const QString& newCode) {
    if (molven.update(rates, {{rate, newCode}}, rate == code) > 0)
        molven.update(strarticle, {{category, newCode}}, category == code);
}

} // namespace

qint64 rename(const Session& session, const QString& code, const QString& newCode) {
    const QString from = code.trimmed(), to = newCode.trimmed();
    if (from.isEmpty()) throw Refusal(QStringLiteral(" Code obligatoire"), QStringLiteral("txtfam"));
    if (to.isEmpty()) throw Refusal(QStringLiteral(" Code obligatoire"), QStringLiteral("txtnouv"));
    if (to.size() > strparam.num_par.size)
        throw Refusal(QStringLiteral("Un code a %1 caractères au plus").arg(strparam.num_par.size),
                      QStringLiteral("txtnouv"));
    references::Files files(session);
    Database molven = files[DataFile::Molven];
    Transaction transaction(files.workspace, QStringLiteral("Changement de code famille"));
    const auto kind =
        std::find_if(kinds().begin(), kinds().end(), [&](const CodeKind* one) { return isIn(molven, *one, from); });
    if (kind == kinds().end()) throw Refusal(QStringLiteral("Ce code n'existe pas"), QStringLiteral("txtfam"));
    requireFree(molven, **kind, to);
    const qint64 articles = count(molven, from);
    renameReferences(files, **kind, from, to);
    renameCategory(molven, strparrem.rem_art, strparrem, strarticle.art_rem, from, to);
    renameCategory(molven, strtauxrep.c_ref, strtauxrep, strarticle.art_crp, from, to);
    molven.update(strparam, {{strparam.num_par, to}}, parameters::ofList((*kind)->letter) && strparam.num_par == from);
    transaction.commit();
    return articles;
}

qint64 count(Database molven, const QString& code) {
    return molven.count(strarticle, strarticle.art_fam == code.trimmed());
}

QString label(Database molven, const QString& code) {
    for (const CodeKind* kind : kinds())
        if (const auto entry = parameters::find(molven, kind->letter, code)) return entry->value(strparam.lib_par);
    return {};
}

} // namespace molven::family_renaming

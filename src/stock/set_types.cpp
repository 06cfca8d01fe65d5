#include "stock/set_types.h"

#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "reference/codes.h"
#include "reference/parameter_tables.h"
#include "reference/prices.h"

namespace molven::set_types {

namespace {

const QString HeadingLine = QStringLiteral("000");
/// VAT codes from this one on are not for articles.
const QString FirstOtherVat = QStringLiteral("4");

void checkAmounts(Database, Record& type) {
    const Record& read = type;
    for (const Number* amount : {&strancillaire.anc_ht, &strancillaire.anc_ttc, &strancillaire.anc_pa})
        require(isPrice(read[*amount]), "Prix incorrect", *amount);
    require(read[strancillaire.anc_tva] < FirstOtherVat, "Code TVA inconnu", strancillaire.anc_tva);
}

} // namespace

const CodeTable& table() {
    static const CodeTable kind{strancillaire,
                                {&strancillaire.anc_code},
                                {{strancillaire.anc_code, QStringLiteral(" Code obligatoire")},
                                 {strancillaire.anc_lib, QStringLiteral(" Libelle obligatoire")}},
                                QStringLiteral("Ce code existe déjà"),
                                QStringLiteral("Ce code n'existe pas"),
                                checkAmounts,
                                false,
                                DataFile::Ancillaire};
    return kind;
}

Criterion ofArticles() { return strparfac.par1_cde < FirstOtherVat; }

std::optional<Record> articleOf(Database molven, const QString& code) {
    const auto article = articles::find(molven, code);
    return article && article->value(strarticle.art_anc) == u"X" ? article : std::nullopt;
}

void copyArticle(const Record& article, Record& type) {
    const std::pair<const Field&, const Field&> copied[] = {
        {strarticle.art_ref, strancillaire.anc_code},  {strarticle.art_li1, strancillaire.anc_lib},
        {strarticle.art_tva, strancillaire.anc_tva},   {strarticle.art_pv1, strancillaire.anc_ht},
        {strarticle.art_ttc, strancillaire.anc_ttc},   {strarticle.art_pam, strancillaire.anc_pa},
        {strarticle.art_cpt, strancillaire.anc_cpt},   {strarticle.art_cpte, strancillaire.anc_cpte},
        {strarticle.art_cpta, strancillaire.anc_cpta}, {strarticle.art_cpts, strancillaire.anc_cpts},
        {strarticle.art_tar, strancillaire.anc_tar}};
    for (const auto& [from, to] : copied) type.set(to, article.value(from));
}

void save(const Files& files, const Record& type, const std::optional<Record>& before) {
    Database ancillaire = files.ancillaire;
    Transaction transaction(ancillaire.workspace(), QStringLiteral("Type d'ancillaire"));
    if (!before) code_tables::requireWritable(ancillaire, table(), type, before);
    Record checked = type;
    codes::check({{DataFile::Molven, files.molven}, {DataFile::Compta, files.compta}}, checked,
                 before ? &*before : nullptr);
    if (before)
        code_tables::change(ancillaire, table(), checked, *before);
    else
        code_tables::add(ancillaire, table(), checked);
    transaction.commit();
}

void remove(Database ancillaire, const Record& type) {
    code_tables::remove(ancillaire, table(), type);
    ancillaire.remove(strnomenclature, strnomenclature.anc_code == type[strancillaire.anc_code]);
}

Criterion componentsOf(const QString& type) {
    return strnomenclature.anc_code == type && strnomenclature.anc_lg != HeadingLine;
}

qint64 unitsOf(Database ancillaire, const QString& type) {
    const auto heading =
        ancillaire.find(strnomenclature, strnomenclature.anc_code == type && strnomenclature.anc_lg == HeadingLine);
    return heading ? (*heading)[strnomenclature.anc_qte].toInteger() : 0;
}

namespace {

/// Brings the heading line up to date with the components.
void putTotal(Database ancillaire, const QString& type) {
    const Decimal total = ancillaire.sum(strnomenclature, strnomenclature.anc_qte, componentsOf(type));
    require(total <= Decimal(MostUnits), "Nomenclature pleine : 996 unités au plus", strnomenclature.anc_qte);
    const Criterion heading = strnomenclature.anc_code == type && strnomenclature.anc_lg == HeadingLine;
    if (ancillaire.update(strnomenclature, {{strnomenclature.anc_qte, total.toString()}}, heading) > 0) return;
    Record made(strnomenclature);
    made[strnomenclature.anc_code] = type;
    made[strnomenclature.anc_lg] = HeadingLine;
    made[strnomenclature.anc_qte] = total;
    ancillaire.insert(made);
}

Recordset storedComponent(Database ancillaire, const Record& asRead) {
    Recordset stored =
        ancillaire.select(strnomenclature, strnomenclature.anc_code == asRead[strnomenclature.anc_code] &&
                                               strnomenclature.anc_lg == asRead[strnomenclature.anc_lg]);
    if (stored.isEmpty() || !(stored.record() == asRead))
        throw Refusal(QStringLiteral("La nomenclature a été modifiée par un autre poste"),
                      strnomenclature.anc_article.name);
    return stored;
}

Decimal quantityOf(const QString& typed) {
    const auto quantity = Decimal::parse(typed);
    require(quantity && *quantity >= Decimal(1) && *quantity == quantity->rounded(0), "Quantité incorrecte",
            strnomenclature.anc_qte);
    return *quantity;
}

} // namespace

void saveComponent(const Files& files, const QString& type, const QString& reference, const QString& quantity,
                   const std::optional<Record>& before) {
    Database ancillaire = files.ancillaire;
    Transaction transaction(ancillaire.workspace(), QStringLiteral("Nomenclature d'un ancillaire"));
    require(ancillaire.count(strancillaire, strancillaire.anc_code == type) > 0, "Ce code n'existe pas",
            strancillaire.anc_code);
    const auto article = articles::find(files.molven, reference);
    require(article.has_value(), "Cet article n'existe pas", strnomenclature.anc_article);
    require(article->value(strarticle.art_aig) == follow_up::ByUnit, "référence non tenue en stock",
            strnomenclature.anc_article);
    const QString code = article->value(strarticle.art_ref);
    Criterion taken = componentsOf(type) && strnomenclature.anc_article == code;
    if (before) taken = taken && strnomenclature.anc_lg != before->value(strnomenclature.anc_lg);
    require(ancillaire.count(strnomenclature, taken) == 0, "Cet article est déjà dans la nomenclature",
            strnomenclature.anc_article);

    Record component(strnomenclature);
    component[strnomenclature.anc_code] = type;
    component[strnomenclature.anc_article] = code;
    component[strnomenclature.anc_libart] = article->value(strarticle.art_li1);
    component[strnomenclature.anc_qte] = quantityOf(quantity);
    if (before) {
        Recordset stored = storedComponent(ancillaire, *before);
        component[strnomenclature.anc_lg] = before->value(strnomenclature.anc_lg);
        stored.edit();
        stored.draft() = component;
        stored.update();
    } else {
        const int last = ancillaire.greatest(strnomenclature, strnomenclature.anc_lg, componentsOf(type)).toInt();
        require(last < MostUnits, "Nomenclature pleine : 996 unités au plus", strnomenclature.anc_qte);
        component[strnomenclature.anc_lg] = padded(QString::number(last + 1), 3);
        ancillaire.insert(component);
    }
    putTotal(ancillaire, type);
    transaction.commit();
}

void removeComponent(Database ancillaire, const Record& asRead) {
    Transaction transaction(ancillaire.workspace(), QStringLiteral("Nomenclature d'un ancillaire"));
    storedComponent(ancillaire, asRead).remove();
    putTotal(ancillaire, asRead[strnomenclature.anc_code]);
    transaction.commit();
}

} // namespace molven::set_types

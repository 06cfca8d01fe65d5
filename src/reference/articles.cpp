#include "reference/articles.h"

#include "data/errors.h"
#include "data/require.h"
#include "reference/codes.h"
#include "reference/ean.h"
#include "reference/parameter_tables.h"
#include "reference/parameters.h"
#include "reference/prices.h"

namespace molven::articles {

std::optional<Record> find(Database molven, const QString& reference) {
    if (reference.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strarticle, strarticle.art_ref == reference.trimmed());
}

void foresee(Database molven, const QStringList& references) {
    QList<Criterion> sought;
    for (const QString& reference : references) sought.append(strarticle.art_ref == reference.trimmed());
    molven.foresee(strarticle, sought);
}

std::optional<Record> findScanned(Database molven, const QString& ean, const QString& supplierReference) {
    std::optional<Record> found;
    if (!ean.isEmpty()) found = molven.find(strarticle, strarticle.art_ean == ean);
    if (!found && !supplierReference.isEmpty())
        found = molven.find(strarticle, strarticle.art_rfou == supplierReference);
    return found;
}

Record blank() {
    Record article(strarticle);
    article[strarticle.art_cpt] = QStringLiteral("700000000");
    article[strarticle.art_cpte] = QStringLiteral("700100000");
    article[strarticle.art_cpta] = QStringLiteral("600000000");
    article[strarticle.art_cpts] = QStringLiteral("300000000");
    article[strarticle.art_tva] = QStringLiteral("1");
    article[strarticle.art_sfam] = QStringLiteral("000");
    article[strarticle.art_gpie] = QStringLiteral("O");
    article[strarticle.art_tar] = QStringLiteral("H");
    article[strarticle.art_cat] = QStringLiteral("L");
    article[strarticle.art_stk] = Decimal();
    article[strarticle.art_cdec] = Decimal();
    article[strarticle.art_cdef] = Decimal();
    return article;
}

Record severalLpp(Database molven, const QString& reference) {
    return molven.find(strartlpp, strartlpp.lpp_ref == reference.trimmed()).value_or(Record(strartlpp));
}

void foreseeSeveralLpp(Database molven, const QStringList& references) {
    QList<Criterion> sought;
    for (const QString& reference : references) sought.append(strartlpp.lpp_ref == reference.trimmed());
    molven.foresee(strartlpp, sought);
}

QString followUpText(const QString& followUp) {
    if (followUp == follow_up::ByUnit) return QStringLiteral("Article tenu en stock et suivi");
    if (followUp == follow_up::ByMovements) return QStringLiteral("Article tenu en stock et non suivi");
    if (followUp == follow_up::None) return QStringLiteral("Article non tenu en stock et non suivi");
    return {};
}

QString originText(const QString& origin) {
    if (origin == u"H") return QStringLiteral("Origine Humaine");
    if (origin == u"A") return QStringLiteral("Origine Animale");
    return QStringLiteral("Origine Ni Humaine, Ni Animale");
}

QString pricePattern(const CompanyRules& rules) {
    return rules.purchasePriceDecimals() == 3 ? QStringLiteral("#####0.000") : QStringLiteral("#####0.00");
}

Entry entryOf(const Record& article) {
    const QString followUp = article[strarticle.art_aig];
    const bool stocked = followUp == follow_up::ByUnit || followUp == follow_up::ByMovements;
    const QString kind = article[strarticle.art_anc];
    Entry entry;
    entry.article = article;
    entry.kind = !kind.isEmpty() ? kind : followUp == follow_up::TextLine ? QStringLiteral("T") : QStringLiteral("A");
    entry.stocked = stocked ? QStringLiteral("O") : QStringLiteral("N");
    entry.followed = followUp == follow_up::ByUnit ? QStringLiteral("O") : QStringLiteral("N");
    return entry;
}

namespace {

bool filled(const QString& value) { return !value.trimmed().isEmpty(); }

} // namespace

void checkValue(const CompanyRules& rules, const QString& field, const QString& value) {
    static const QStringList yesOrNo{QStringLiteral("Txtop2"), QStringLiteral("Txtop3")};
    static const QStringList labels{strarticle.art_li1.name, strarticle.art_li2.name, strarticle.art_lib3.name};
    if (!filled(value)) return;
    const auto isOneOf = [&value](const QString& letters) { return value.size() == 1 && letters.contains(value); };
    if (field == u"Txtop1")
        require(isOneOf(rules.hasAncillarySets() ? QStringLiteral("ATX") : QStringLiteral("AT")),
                rules.hasAncillarySets() ? "Taper T ou A ou X!!" : "Taper T ou A  !!", field);
    if (yesOrNo.contains(field)) require(isOneOf(QStringLiteral("ON")), "Taper O ou N !!", field);
    if (labels.contains(field)) require(!value.contains(u'\''), "le symbole  ' est interdit", field);
}

namespace {

void checkKind(const Entry& entry, const CompanyRules& rules) {
    require(filled(entry.kind), " Type A/T/X obligatoire", QStringLiteral("Txtop1"));
    checkValue(rules, QStringLiteral("Txtop1"), entry.kind);
    if (entry.kind == u"T") return;
    require(filled(entry.stocked), " Tenu stock obligatoire", QStringLiteral("Txtop2"));
    checkValue(rules, QStringLiteral("Txtop2"), entry.stocked);
    if (entry.stocked == u"N") return;
    require(filled(entry.followed), " Suivi obligatoire", QStringLiteral("Txtop3"));
    checkValue(rules, QStringLiteral("Txtop3"), entry.followed);
}

QString followUpOf(const Entry& entry) {
    if (entry.kind == u"T") return follow_up::TextLine;
    if (entry.stocked == u"N") return follow_up::None;
    return entry.followed == u"O" ? follow_up::ByUnit : follow_up::ByMovements;
}

/// A letter of the article that must be given, and be one of its kind.
void checkLetter(Database molven, const Record& article, const Text& field, const char* missing) {
    require(filled(article[field]), missing, field.name);
    codes::require(molven, field, *field.code, article[field]);
}

void checkStocked(Database molven, const Record& article) {
    const QString type = article[strarticle.art_typ];
    checkLetter(molven, article, strarticle.art_typ, " Type F/N/G obligatoire");
    checkLetter(molven, article, strarticle.art_hom, " Homologation O/N obligatoire");
    checkLetter(molven, article, strarticle.art_ste, " Stérilisation O/N obligatoire");
    if (article[strarticle.art_cat] == u"T")
        require(filled(article[strarticle.art_tip]), " TIPS obligatoire", strarticle.art_tip.name);
    else
        require(filled(article[strarticle.art_lpp]), " LPP obligatoire", strarticle.art_lpp.name);
    require(filled(article[strarticle.art_fou]), " Fournisseur obligatoire", strarticle.art_fou.name);
    require(filled(article[strarticle.art_fam]), " Famille obligatoire", strarticle.art_fam.name);
    const QString origin = article[strarticle.art_ori];
    require(type != u"G" || filled(origin), " Origine obligatoire", strarticle.art_ori.name);
    codes::require(molven, strarticle.art_ori, *strarticle.art_ori.code, origin);
    require(article[strarticle.art_hom] != u"O" || filled(article[strarticle.art_nho]),
            "N° Homologation/CE obligatoire", strarticle.art_nho.name);
}

/// A sub-family belongs to one family; an old record that is wrong there stays changeable elsewhere.
void checkSubFamily(Database molven, const Record& article, const std::optional<Record>& before) {
    const QString family = article[strarticle.art_fam], subFamily = article[strarticle.art_sfam];
    if (!filled(subFamily) || codes::SubFamily.besides.contains(subFamily)) return;
    if (before && (*before)[strarticle.art_fam] == family && (*before)[strarticle.art_sfam] == subFamily) return;
    const Criterion ofFamily = parameters::ofList(list::SubFamily) && strparam.num_par == subFamily;
    require(molven.count(strparam, ofFamily && strparam.cpt_par == family) > 0,
            "Cette sous-famille n'est pas de la famille de l'article", strarticle.art_sfam.name);
}

void checkLabels(const Record& article, const CompanyRules& rules) {
    for (const Label* label : {&strarticle.art_li1, &strarticle.art_li2, &strarticle.art_lib3})
        checkValue(rules, label->name, article[*label]);
}

void checkNumbers(const Record& article) {
    for (const Number* price : {&strarticle.art_pv1, &strarticle.art_ttc})
        require(isPrice(article[*price]), "Prix incorrect", price->name);
    const Decimal least = article[strarticle.art_min];
    require(!(least < Decimal(0)) && least == least.rounded(0), "Stock minimum incorrect", strarticle.art_min.name);
}

const QList<const Text*>& lppFields() {
    static const QList<const Text*> fields{&strartlpp.lpp_1, &strartlpp.lpp_2, &strartlpp.lpp_3};
    return fields;
}

/// The codes typed in whichever boxes, moved up to the first ones. Throws Refusal when there is none, or one twice.
Record arrangedLpp(const Record& typed) {
    QStringList codes;
    for (const Text* field : lppFields()) {
        const QString code = typed[*field].trimmed();
        if (!filled(code)) continue;
        require(!codes.contains(code), "Ce code LPP est saisi deux fois", field->name);
        codes.append(code);
    }
    require(!codes.isEmpty(), " LPP obligatoire", strartlpp.lpp_1.name);
    Record arranged(strartlpp);
    for (qsizetype i = 0; i < codes.size(); ++i) arranged[*lppFields()[i]] = codes[i];
    return arranged;
}

/// The side table holds codes of articles whose code says so, and of no other.
void keepSeveralLpp(Database molven, const Entry& entry, const QString& reference) {
    const bool several = entry.article[strarticle.art_lpp] == SeveralLpp;
    if (several && !entry.severalLpp) return;
    molven.remove(strartlpp, strartlpp.lpp_ref == reference);
    if (!several) return;
    Record codes = *entry.severalLpp;
    codes[strartlpp.lpp_ref] = reference;
    molven.insert(codes);
}

/// Gives an article that must have one its EAN code, and the pool what the article bears no more.
QString keepEan(Database gencode, const CompanyRules& rules, Entry& entry, const std::optional<Record>& before) {
    Record& article = entry.article;
    const Record& read = article;
    const QString reference = read[strarticle.art_ref].trimmed();
    const bool due = rules.allocatesEan() && entry.kind != u"T" && read[strarticle.art_typ] == u"F";
    QString notice;
    if (due && !filled(read[strarticle.art_ean])) {
        const auto code = ean::codeFor(gencode, reference);
        if (!code) notice = QStringLiteral("probleme Gencode");
        if (!code && !before) throw Refusal(notice, strarticle.art_ean.name);
        article[strarticle.art_ean] = code.value_or(QString());
    }
    if (!before || before->value(strarticle.art_ean) != read[strarticle.art_ean])
        ean::assign(gencode, reference, read[strarticle.art_ean]);
    return notice;
}

} // namespace

const QList<Account>& accounts() {
    static const QList<Account> all{{strarticle.art_cpt, QStringLiteral("7")},
                                    {strarticle.art_cpte, QStringLiteral("7")},
                                    {strarticle.art_cpta, QStringLiteral("607")},
                                    {strarticle.art_cpts, QStringLiteral("3")}};
    return all;
}

void checkAccount(Database compta, const Account& account, const QString& number) {
    if (!filled(number)) throw Refusal(account.field.unknown, account.field.name);
    codes::require(compta, account.field, *account.field.code, number);
}

QString save(Database molven, Database compta, Database gencode, const CompanyRules& rules, Entry entry,
             const std::optional<Record>& before) {
    Record& article = entry.article;
    const Record& read = article;
    const QString reference = read[strarticle.art_ref].trimmed();
    require(filled(reference), "Référence obligatoire", strarticle.art_ref.name);
    require(filled(read[strarticle.art_li1]), " Libellé obligatoire", strarticle.art_li1.name);
    checkLabels(article, rules);
    checkKind(entry, rules);
    article[strarticle.art_aig] = followUpOf(entry);
    article[strarticle.art_anc] = entry.kind;
    if (entry.kind != u"T" && entry.stocked == u"O") checkStocked(molven, article);
    codes::check({{DataFile::Molven, molven}}, article, before ? &*before : nullptr);
    checkSubFamily(molven, article, before);
    if (entry.severalLpp && read[strarticle.art_lpp] == SeveralLpp) {
        entry.severalLpp = arrangedLpp(*entry.severalLpp);
        codes::check({{DataFile::Molven, molven}}, *entry.severalLpp);
    }
    if (!before || read[strarticle.art_ean] != (*before)[strarticle.art_ean])
        ean::requireFree(molven, gencode, read[strarticle.art_ean], reference);
    for (const Account& account : accounts()) checkAccount(compta, account, article[account.field]);
    checkNumbers(article);
    for (const Label* label : {&strarticle.art_li1, &strarticle.art_li2, &strarticle.art_lib3})
        article[*label] = read[*label].toUpper();

    return Transaction::run(molven.workspace(), QStringLiteral("Fiche article"), locksOf(reference), [&] {
        Recordset existing = molven.select(strarticle, strarticle.art_ref == reference);
        if (before)
            require(!existing.isEmpty(), "Ce code n'existe pas", strarticle.art_ref.name);
        else
            require(existing.isEmpty(), "Ce code existe déjà", strarticle.art_ref.name);
        const QString notice = keepEan(gencode, rules, entry, before);
        if (before)
            existing.edit(*before);
        else
            existing.addNew();
        existing.draft() = article;
        existing.update();
        keepSeveralLpp(molven, entry, reference);
        return notice;
    });
}

void remove(Database molven, Database gencode, const QString& reference) {
    Transaction transaction(molven.workspace(), QStringLiteral("Suppression de l'article"));
    const auto article = find(molven, reference);
    if (!article) throw Refusal(QStringLiteral("Aucun article sélectionné"), strarticle.art_ref.name);
    const Record& read = *article;
    if (!read[strarticle.art_stk].isZero() || !read[strarticle.art_cdec].isZero() ||
        !read[strarticle.art_cdef].isZero())
        throw Refusal(QStringLiteral("Cet article a des produits en stock/en commande"), strarticle.art_ref.name);
    molven.remove(strarticle, strarticle.art_ref == reference);
    molven.remove(strartlpp, strartlpp.lpp_ref == reference);
    ean::assign(gencode, reference, {});
    transaction.commit();
}

void moveStock(Database molven, const QString& reference, const Decimal& quantity) {
    molven.addTo(strarticle, strarticle.art_stk, quantity, strarticle.art_ref == reference.trimmed());
}

} // namespace molven::articles

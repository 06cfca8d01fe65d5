#include "support/dossier.h"

#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "sales/pricing.h"

namespace molven {

using test::Dossier;
using test::refusalOf;
using test::refusedField;

namespace {

class TypedCodes : public testing::Test {
protected:
    TypedCodes()
        : molven(workspace.open(dossier.session.molven())),
          compta(workspace.open(dossier.session.path(DataFile::Compta))),
          gencode(workspace.open(dossier.session.path(DataFile::Gencode))) {}

    void addEntry(const QString& letter, const char* code) {
        Record entry(strparam);
        entry[strparam.cod_par] = letter;
        entry[strparam.num_par] = QString::fromLatin1(code);
        entry[strparam.lib_par] = QStringLiteral("ENTREE ") + QString::fromLatin1(code);
        code_tables::add(molven, code_tables::parameters(), entry);
    }
    void addNumericArticle() {
        articles::Entry entry = articles::entryOf(*articles::find(molven, QStringLiteral("HIP")));
        entry.article[strarticle.art_ref] = QStringLiteral("4711");
        articles::save(molven, compta, gencode, dossier.session.rules(), entry, std::nullopt);
    }

    Dossier dossier;
    Workspace workspace;
    Database molven, compta, gencode;
};

} // namespace

TEST_F(TypedCodes, TypedShortAreCompletedByTheFormatOfTheirTable) {
    addEntry(list::Dispatch, "01");
    addEntry(list::Dispatch, "007");
    addNumericArticle();
    struct {
        const CodeKind& kind;
        const char* typed;
        const char* kept;
    } const cases[] = {{codes::Client, "2", "000002"},
                       {codes::Client, " 99 ", "000099"},
                       {codes::Client, "A1", "A1"},
                       {codes::PaymentMode, "4", "04"},
                       {codes::Depot, "1", "001"},
                       {codes::Depot, "a01", "A01"},
                       {codes::Dispatch, "1", "01"},
                       {codes::Dispatch, "7", "007"},
                       {codes::Dispatch, "9", "9"},
                       {codes::Article, "hip", "HIP"},
                       {codes::ArticleOfTariff, "hip", "HIP"},
                       {codes::ArticleOfTariff, "4711", "0000000004711"},
                       {codes::Article, "0000000004711", "0000000004711"},
                       {codes::YesNo, "o", "O"},
                       {codes::LppCode, "multi", "MULTI"},
                       {codes::Client, "", ""}};
    for (const auto& c : cases)
        EXPECT_EQ(codes::completed(molven, c.kind, QString::fromLatin1(c.typed)), QString::fromLatin1(c.kept))
            << c.typed;
    EXPECT_TRUE(codes::find(molven, codes::ArticleOfTariff, QStringLiteral("0000000004711")).has_value());
}

TEST_F(TypedCodes, OfClientsThatTheirTablesLackAreRefusedAndEmptyOnesAreNot) {
    struct {
        const Text& field;
        const char* code;
        const char* told;
    } const cases[] = {{strclient.clt_fam, "ZZZ", "Famille inconnue"},
                       {strclient.clt_dep, "999", "Dépôt inconnu"},
                       {strclient.clt_rep, "9", "Représentant inconnu"},
                       {strclient.clt_rgt, "88", "Mode de règlement inconnu"},
                       {strclient.clt_rgt, "", "Mode de règlement inconnu"},
                       {strclient.clt_rem, "Q", "Code remise incorrect"},
                       {strclient.clt_exp, "9", "Mode inconnu"},
                       {strclient.clt_fac, "Q", "Taper O ou N !!"},
                       {strclient.clt_rbl, "1", "Taper O ou N !!"},
                       {strclient.clt_cpt, "41A999", "N° Compte incorrect"},
                       {strclient.clt_cpt, "0", "N° Compte incorrect"},
                       {strclient.clt_fam, "", "(accepté)"},
                       {strclient.clt_dep, "", "(accepté)"}};
    for (const auto& c : cases) {
        Record client = parties::blankClient(molven);
        client[strclient.clt_nom] = QStringLiteral("CLINIQUE");
        client[c.field] = QString::fromUtf8(c.code);
        const auto save = [&] { parties::saveClient(molven, client, std::nullopt); };
        EXPECT_EQ(refusalOf(save), QString::fromUtf8(c.told)) << c.code;
        if (c.told[0] != '(') {
            EXPECT_EQ(refusedField(save), c.field.name);
        }
    }
}

TEST_F(TypedCodes, DeletedLongAgoDoNotBlockTheirOldRecords) {
    molven.update(strclient, {{strclient.clt_rep, QStringLiteral("OLD")}},
                  strclient.clt_cod == QStringLiteral("000001"));
    const Record before = *parties::findClient(molven, QStringLiteral("1"));
    Record client = before;
    client[strclient.clt_rgt] = QStringLiteral("4");
    parties::saveClient(molven, client, before);
    const Record after = *parties::findClient(molven, QStringLiteral("1"));
    EXPECT_EQ(after[strclient.clt_rep] + after[strclient.clt_rgt], QStringLiteral("OLD04"));
}

TEST_F(TypedCodes, OfArticlesAreCheckedByKindAndTheEanByItsDigit) {
    struct {
        const Text& field;
        const char* code;
        const char* told;
    } const cases[] = {{strarticle.art_fam, "ZZZ", "Famille inconnue"},
                       {strarticle.art_sfam, "ZZZ", "Sous-famille inconnue"},
                       {strarticle.art_fou, "77", "Ce fournisseur n'existe pas"},
                       {strarticle.art_tva, "9", "Code TVA inconnu"},
                       {strarticle.art_lpp, "1", "Code LPP inconnu"},
                       {strarticle.art_tip, "1", "Code TIPS inconnu"},
                       {strarticle.art_gpie, "Q", "Taper O ou N !!"},
                       {strarticle.art_ean, "12AB", "Code EAN incorrect : 12AB"},
                       {strarticle.art_ean, "4006381333932", "Code EAN incorrect : 4006381333932"},
                       {strarticle.art_ean, "4006381333931", "(accepté)"},
                       {strarticle.art_fou, "1", "(accepté)"}};
    const auto save = [this](const char* reference, const Text& field, const char* code) {
        articles::Entry entry = articles::entryOf(*articles::find(molven, QString::fromLatin1(reference)));
        const Record before = entry.article;
        entry.article[field] = QString::fromLatin1(code);
        return refusalOf([&] { articles::save(molven, compta, gencode, dossier.session.rules(), entry, before); });
    };
    for (const auto& c : cases) EXPECT_EQ(save("HIP", c.field, c.code), QString::fromUtf8(c.told)) << c.code;
    EXPECT_EQ(save("SCREW", strarticle.art_ean, "4006381333931"), QStringLiteral("Ce code est pris par l'article HIP"));
}

TEST_F(TypedCodes, OfTariffsAreKeptInTheirFullFormAndFoundInEither) {
    addNumericArticle();
    Record tariff(strtarifclt);
    tariff[strtarifclt.tar_clt] = QStringLiteral("1");
    tariff[strtarifclt.tar_ref] = QStringLiteral("4711");
    tariff[strtarifclt.tar_pvt] = Decimal(90);
    code_tables::add(molven, code_tables::clientTariffs(), tariff);
    EXPECT_EQ(molven.find(strtarifclt, {})->value(strtarifclt.tar_ref), QStringLiteral("0000000004711"));
    EXPECT_EQ(refusalOf([&] { code_tables::add(molven, code_tables::clientTariffs(), tariff); }),
              QStringLiteral("Ce tarif existe déjà"));
    const auto price = [this] {
        const Record article = *articles::find(molven, QStringLiteral("4711"));
        const Record client = *parties::findClient(molven, QStringLiteral("1"));
        return pricing::preset(molven, article, client, false, false).price;
    };
    EXPECT_EQ(price(), Decimal(90));
    molven.update(strtarifclt, {{strtarifclt.tar_ref, QStringLiteral("4711")}}, {}); // as an older program kept it
    EXPECT_EQ(price(), Decimal(90));
    code_tables::remove(molven, code_tables::clientTariffs(), tariff);
    EXPECT_EQ(molven.count(strtarifclt), 0);
}

} // namespace molven

#include "support/dossier.h"

#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/ean.h"
#include "reference/parameters.h"
#include "reference/parties.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

class ArticleFiles : public testing::Test {
protected:
    explicit ArticleFiles(const QString& company = QStringLiteral("CE"))
        : dossier(company),
          molven(workspace.open(dossier.session.molven())),
          compta(workspace.open(dossier.session.path(DataFile::Compta))),
          gencode(workspace.open(dossier.session.path(DataFile::Gencode))) {}

    articles::Entry entryOf(const char* reference) {
        return articles::entryOf(articles::find(molven, QString::fromLatin1(reference)).value());
    }
    QString save(const articles::Entry& entry, const std::optional<Record>& before = {}) {
        return refusalOf([&] { articles::save(molven, compta, gencode, dossier.session.rules(), entry, before); });
    }
    QString eanOf(const char* reference) {
        return articles::find(molven, QString::fromLatin1(reference))->value(strarticle.art_ean);
    }

    Dossier dossier;
    Workspace workspace;
    Database molven, compta, gencode;
};

class ArticleFilesOfMd : public ArticleFiles {
protected:
    ArticleFilesOfMd() : ArticleFiles(QStringLiteral("MD")) {}
};

struct FaultCase {
    const char* message;
    void (*spoil)(articles::Entry&);
};

} // namespace

TEST_F(ArticleFiles, TellTheirFaultsInTheOrderOfTheScreen) {
    // Each case also carries the faults of all that follow it: the first one alone is told.
    static const FaultCase cases[] = {
        {"N° Homologation/CE obligatoire",
         [](articles::Entry& e) { e.article[strarticle.art_hom] = QStringLiteral("O"); }},
        {" Origine obligatoire", [](articles::Entry& e) { e.article[strarticle.art_typ] = QStringLiteral("G"); }},
        {" Famille obligatoire", [](articles::Entry& e) { e.article[strarticle.art_fam] = QString(); }},
        {" Fournisseur obligatoire", [](articles::Entry& e) { e.article[strarticle.art_fou] = QString(); }},
        {" LPP obligatoire", [](articles::Entry& e) { e.article[strarticle.art_lpp] = QString(); }},
        {" TIPS obligatoire", [](articles::Entry& e) { e.article[strarticle.art_cat] = QStringLiteral("T"); }},
        {" Stérilisation O/N obligatoire", [](articles::Entry& e) { e.article[strarticle.art_ste] = QString(); }},
        {" Homologation O/N obligatoire", [](articles::Entry& e) { e.article[strarticle.art_hom] = QString(); }},
        {" Type F/N/G obligatoire", [](articles::Entry& e) { e.article[strarticle.art_typ] = QString(); }},
        {" Suivi obligatoire", [](articles::Entry& e) { e.followed.clear(); }},
        {" Tenu stock obligatoire", [](articles::Entry& e) { e.stocked.clear(); }},
        {" Type A/T/X obligatoire", [](articles::Entry& e) { e.kind.clear(); }},
        {"le symbole  ' est interdit",
         [](articles::Entry& e) { e.article[strarticle.art_li2] = QStringLiteral("L'AUTRE"); }},
        {" Libellé obligatoire", [](articles::Entry& e) { e.article[strarticle.art_li1] = QString(); }},
        {"Référence obligatoire", [](articles::Entry& e) { e.article[strarticle.art_ref] = QString(); }}};
    articles::Entry entry = entryOf("HIP");
    for (const FaultCase& c : cases) {
        c.spoil(entry);
        EXPECT_EQ(save(entry), QString::fromUtf8(c.message));
    }
    EXPECT_EQ(molven.count(strarticle), 6);
}

TEST_F(ArticleFiles, RefuseUnknownLettersAndAccounts) {
    const std::pair<const char*, void (*)(articles::Entry&)> cases[] = {
        {"Taper T ou A ou X!!", [](articles::Entry& e) { e.kind = QStringLiteral("Z"); }},
        {"Taper O ou N !!", [](articles::Entry& e) { e.stocked = QStringLiteral("Y"); }},
        {"Taper F / N ou G !!", [](articles::Entry& e) { e.article[strarticle.art_typ] = QStringLiteral("Q"); }},
        {"Taper T ou L !!", [](articles::Entry& e) { e.article[strarticle.art_cat] = QStringLiteral("X"); }},
        {"Prix incorrect", [](articles::Entry& e) { e.article[strarticle.art_pv1] = Decimal(-1); }},
        {"Prix incorrect", [](articles::Entry& e) { e.article[strarticle.art_ttc] = Decimal(-1); }},
        {"Stock minimum incorrect",
         [](articles::Entry& e) { e.article[strarticle.art_min] = Decimal(3) / Decimal(2); }},
        {"Origine incorrecte", [](articles::Entry& e) { e.article[strarticle.art_ori] = QStringLiteral("Q"); }},
        {"Cette imputation comptable VENTE n'existe pas",
         [](articles::Entry& e) { e.article[strarticle.art_cpt] = QStringLiteral("7"); }},
        {"Cette imputation comptable VENTE EXPORT n'existe pas",
         [](articles::Entry& e) { e.article[strarticle.art_cpte] = QString(); }},
        {"Cette imputation comptable ACHAT n'existe pas",
         [](articles::Entry& e) { e.article[strarticle.art_cpta] = QStringLiteral("999"); }},
        {"Cette imputation comptable STOCK n'existe pas",
         [](articles::Entry& e) { e.article[strarticle.art_cpts] = QStringLiteral("x' or 1"); }},
        {"Ce code existe déjà", [](articles::Entry&) {}}};
    for (const auto& [message, spoil] : cases) {
        articles::Entry entry = entryOf("HIP");
        spoil(entry);
        EXPECT_EQ(save(entry), QString::fromUtf8(message));
    }
}

TEST_F(ArticleFiles, TakeASubFamilyOfTheirFamilyAlone) {
    for (const char* family : {"000", "ABC"}) {
        Record subFamily(strparam);
        subFamily[strparam.cod_par] = list::SubFamily;
        subFamily[strparam.num_par] = family[0] == '0' ? QStringLiteral("770") : QStringLiteral("771");
        subFamily[strparam.cpt_par] = QString::fromLatin1(family);
        molven.insert(subFamily);
    }
    const auto kept = [this](const char* subFamily) {
        articles::Entry entry = entryOf("HIP");
        const Record before = entry.article;
        entry.article[strarticle.art_sfam] = QString::fromLatin1(subFamily);
        return save(entry, before);
    };
    EXPECT_EQ(kept("770"), QStringLiteral("(accepté)"));
    EXPECT_EQ(kept("771"), QStringLiteral("Cette sous-famille n'est pas de la famille de l'article"));
    molven.update(strarticle, {{strarticle.art_sfam, QStringLiteral("771")}},
                  strarticle.art_ref == QStringLiteral("HIP"));
    EXPECT_EQ(kept("771"), QStringLiteral("(accepté)")) << "an old article stays changeable";
}

TEST_F(ArticleFilesOfMd, KnowNoAncillaryKindAndTakeNoEan) {
    articles::Entry entry = entryOf("HIP");
    entry.kind = QStringLiteral("X");
    EXPECT_EQ(save(entry), QStringLiteral("Taper T ou A  !!"));
    EXPECT_EQ(eanOf("CUP"), QString());
}

TEST_F(ArticleFiles, TakeOneEanFromThePoolAndOnlyOnce) {
    EXPECT_EQ(eanOf("CUP"), QStringLiteral("3760000000017"));
    EXPECT_EQ(eanOf("HIP"), QString()) << "not manufactured";
    articles::Entry entry = entryOf("CUP");
    EXPECT_EQ(save(entry, entry.article), QStringLiteral("(accepté)"));
    EXPECT_EQ(gencode.count(strgencode, strgencode.ean_art == QStringLiteral("CUP")), 1);
    entry.article[strarticle.art_ref] = QStringLiteral("CUP2");
    entry.article[strarticle.art_ean] = QString();
    EXPECT_EQ(save(entry), QStringLiteral("(accepté)"));
    EXPECT_EQ(eanOf("CUP2"), QStringLiteral("3760000000024"));
    entry.article[strarticle.art_ref] = QStringLiteral("CUP3");
    EXPECT_EQ(save(entry), QStringLiteral("probleme Gencode"));
    EXPECT_FALSE(articles::find(molven, QStringLiteral("CUP3")).has_value());

    // An old article is changed all the same, and says that it has no code.
    entry = entryOf("HIP");
    const Record before = entry.article;
    entry.article[strarticle.art_typ] = QStringLiteral("F");
    EXPECT_EQ(articles::save(molven, compta, gencode, dossier.session.rules(), entry, before),
              QStringLiteral("probleme Gencode"));
    EXPECT_EQ(articles::find(molven, QStringLiteral("HIP"))->value(strarticle.art_typ), QStringLiteral("F"));
}

TEST_F(ArticleFiles, GiveTheirEanBackToThePoolAndTakeNoOtherArticles) {
    articles::remove(molven, gencode, QStringLiteral("CUP"));
    EXPECT_EQ(ean::codeFor(gencode, QStringLiteral("AUTRE")), QStringLiteral("3760000000017"));
    articles::Entry text = entryOf("NOTE");
    const Record note = text.article;
    text.article[strarticle.art_typ] = QStringLiteral("F");
    EXPECT_EQ(save(text, note), QStringLiteral("(accepté)"));
    EXPECT_EQ(eanOf("NOTE"), QString()) << "a text line has no barcode";

    articles::Entry entry = entryOf("HIP");
    const Record before = entry.article;
    entry.article[strarticle.art_ean] = QStringLiteral("3760000000017");
    EXPECT_EQ(save(entry, before), QStringLiteral("(accepté)"));
    articles::Entry other = entryOf("GRAFT");
    const Record graft = other.article;
    other.article[strarticle.art_ean] = QStringLiteral("3760000000017");
    EXPECT_EQ(save(other, graft), QStringLiteral("Ce code est pris par l'article HIP"));
    const Record taken = entry.article;
    entry.article[strarticle.art_ean] = QString();
    EXPECT_EQ(save(entry, taken), QStringLiteral("(accepté)"));
    EXPECT_EQ(gencode.count(strgencode, strgencode.ean_art != QString()), 0);
}

TEST_F(ArticleFiles, KeepFollowUpCodesAndLabelsInUpperCase) {
    const std::pair<const char*, const char*> codes[] = {{"HIP", "O"}, {"SCREW", "K"}, {"FEE", "N"}, {"NOTE", "T"}};
    for (const auto& [reference, code] : codes)
        EXPECT_EQ(articles::find(molven, QString::fromLatin1(reference))->value(strarticle.art_aig),
                  QString::fromLatin1(code));
    articles::Entry entry = entryOf("HIP");
    const Record before = entry.article;
    entry.article[strarticle.art_li1] = QStringLiteral("tête élargie");
    EXPECT_EQ(save(entry, before), QStringLiteral("(accepté)"));
    EXPECT_EQ(articles::find(molven, QStringLiteral("hip"))->value(strarticle.art_li1), QStringLiteral("TÊTE ÉLARGIE"));
}

TEST_F(ArticleFiles, KeepAReceiptMadeWhileTheyWereChanged) {
    articles::Entry entry = entryOf("HIP");
    const Record before = entry.article;
    dossier.receive(QStringLiteral("HIP"), 2);
    entry.article[strarticle.art_li2] = QStringLiteral("NOUVEAU");
    EXPECT_EQ(save(entry, before), QStringLiteral("(accepté)"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    const Record stored = *articles::find(molven, QStringLiteral("HIP"));
    EXPECT_EQ(stored[strarticle.art_li2], QStringLiteral("NOUVEAU"));
    EXPECT_NE(stored[strarticle.art_dpa], before[strarticle.art_dpa]);

    entry.article[strarticle.art_li2] = QStringLiteral("ENCORE");
    EXPECT_EQ(test::dataErrorOf([&] { save(entry, before); }), DataError::RecordChanged);
}

TEST_F(ArticleFiles, AreNotDeletedWhileTheyHaveStockOrOrders) {
    dossier.receive(QStringLiteral("HIP"), 1);
    const auto remove = [&](const char* reference) {
        return refusalOf([&] { articles::remove(molven, gencode, QString::fromLatin1(reference)); });
    };
    EXPECT_EQ(remove("HIP"), QStringLiteral("Cet article a des produits en stock/en commande"));
    molven.update(strarticle, {{strarticle.art_cdef, QStringLiteral("1")}},
                  strarticle.art_ref == QStringLiteral("CUP"));
    EXPECT_EQ(remove("CUP"), QStringLiteral("Cet article a des produits en stock/en commande"));
    EXPECT_EQ(remove("FEE"), QStringLiteral("(accepté)"));
    EXPECT_EQ(remove("FEE"), QStringLiteral("Aucun article sélectionné"));
}

TEST_F(ArticleFiles, OfClientsCheckTheirCodes) {
    const std::pair<const char*, void (*)(Record&)> cases[] = {
        {" N° Client obligatoire", [](Record& c) { c[strclient.clt_cod] = QString(); }},
        {"code invalide", [](Record& c) { c[strclient.clt_cod] = QStringLiteral("AB"); }},
        {" Nom obligatoire", [](Record& c) { c[strclient.clt_nom] = QStringLiteral(" "); }},
        {"N° Compte incorrect", [](Record& c) { c[strclient.clt_cpt] = QStringLiteral("000000"); }},
        {"Mode de règlement inconnu", [](Record& c) { c[strclient.clt_rgt] = QStringLiteral("99"); }},
        {"Dépôt inconnu", [](Record& c) { c[strclient.clt_dep] = QStringLiteral("999"); }},
        {"Code remise incorrect", [](Record& c) { c[strclient.clt_rem] = QStringLiteral("Z"); }},
        {"Ce code existe déjà", [](Record& c) { c[strclient.clt_cod] = QStringLiteral("1"); }},
        {"(accepté)", [](Record&) {}}};
    for (const auto& [message, spoil] : cases) {
        Record client = parties::blankClient(molven);
        client[strclient.clt_nom] = QStringLiteral("L'HÔTEL-DIEU");
        spoil(client);
        EXPECT_EQ(refusalOf([&] { parties::saveClient(molven, client, std::nullopt); }), QString::fromUtf8(message));
    }
    EXPECT_EQ(molven.count(strclient, strclient.clt_nom == QStringLiteral("L'HÔTEL-DIEU")), 1);
    EXPECT_EQ(parties::blankClient(molven).value(strclient.clt_cod), QStringLiteral("000004"));
    for (const char* code : {"999999", "ZZ-9"}) { // the last code of all, one from another program
        Record foreign(strclient);
        foreign[strclient.clt_cod] = QString::fromLatin1(code);
        molven.insert(foreign);
        EXPECT_EQ(parties::blankClient(molven).value(strclient.clt_cod), QStringLiteral("000004"));
    }
}

TEST_F(ArticleFiles, OfClientsKeepAFolderWhateverElseIsWrittenMeanwhile) {
    molven.update(strclient, {{strclient.clt_tel1, QStringLiteral("04")}}, {});
    parties::setClientFolder(molven, QStringLiteral("1"), QStringLiteral("/documents/1"));
    const Record client = parties::findClient(molven, QStringLiteral("1")).value();
    EXPECT_EQ(client[strclient.clt_chemin] + client[strclient.clt_tel1], QStringLiteral("/documents/104"));
    EXPECT_EQ(parties::findClient(molven, QStringLiteral("2"))->value(strclient.clt_chemin), QString());
    EXPECT_EQ(refusalOf([&] { parties::setClientFolder(molven, QStringLiteral("1"), QString(256, u'x')); }),
              QStringLiteral("Chemin trop long"));
    EXPECT_EQ(refusalOf([&] { parties::setSupplierFolder(molven, QStringLiteral("9"), QStringLiteral("/x")); }),
              QStringLiteral("Ce code n'existe pas"));
}

namespace {

struct DueCase {
    int days;
    const char* endOfMonth;
    int day;
    const char* from;
    const char* due;
};

} // namespace

class DueDates : public testing::TestWithParam<DueCase> {};

TEST_P(DueDates, FollowDaysThenEndOfMonthThenDay) {
    const DueCase& c = GetParam();
    Record mode(strparrgt);
    mode[strparrgt.nbj_rglt] = Decimal(c.days);
    mode[strparrgt.fdm_rglt] = QString::fromLatin1(c.endOfMonth);
    mode[strparrgt.jou_rglt] = Decimal(c.day);
    EXPECT_EQ(parameters::dueDate(mode, QDate::fromString(QString::fromLatin1(c.from), QStringLiteral("dd/MM/yyyy"))),
              QString::fromLatin1(c.due));
}

INSTANTIATE_TEST_SUITE_P(
    OfTheTrade, DueDates,
    testing::Values(DueCase{30, "N", 0, "31/01/2026", "02/03/2026"}, DueCase{30, "O", 0, "31/01/2026", "31/03/2026"},
                    DueCase{0, "N", 0, "10/03/2026", "10/03/2026"}, DueCase{60, "N", 10, "15/03/2026", "10/06/2026"},
                    DueCase{30, "O", 10, "15/03/2026", "10/05/2026"}, DueCase{0, "N", 31, "15/02/2026", "28/02/2026"},
                    DueCase{30, "O", 0, "15/01/2028", "29/02/2028"}));

TEST_F(ArticleFiles, OfListsKeepOneCodeTwiceInTwoLists) {
    Record entry(strparam);
    entry[strparam.cod_par] = list::Surgeon;
    entry[strparam.num_par] = QStringLiteral("101");
    EXPECT_EQ(refusalOf([&] { code_tables::add(molven, code_tables::parameters(), entry); }),
              QStringLiteral(" Libellé obligatoire"));
    entry[strparam.lib_par] = QStringLiteral("DR D'ESSAI");
    EXPECT_EQ(refusalOf([&] { code_tables::add(molven, code_tables::parameters(), entry); }),
              QStringLiteral("(accepté)"));
    EXPECT_EQ(refusalOf([&] { code_tables::add(molven, code_tables::parameters(), entry); }),
              QStringLiteral("Ce code existe déjà"));
    const Record read = parameters::find(molven, list::Surgeon, QStringLiteral("101")).value();
    entry[strparam.lib_par] = QStringLiteral("PR D'ESSAI");
    code_tables::change(molven, code_tables::parameters(), entry, read);
    EXPECT_EQ(test::dataErrorOf([&] { code_tables::change(molven, code_tables::parameters(), entry, read); }),
              DataError::RecordChanged);
    code_tables::remove(molven, code_tables::parameters(), entry);
    EXPECT_EQ(parameters::label(molven, list::Depot, QStringLiteral("101")), QStringLiteral("DEPOT 101"));
    EXPECT_EQ(refusalOf([&] { code_tables::change(molven, code_tables::parameters(), entry, read); }),
              QStringLiteral("Ce code n'existe pas"));
}

} // namespace molven

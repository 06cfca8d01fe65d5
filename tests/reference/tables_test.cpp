#include "support/dossier.h"

#include "reference/article_updates.h"
#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/ean.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "sales/documents.h"
#include "sales/lpp_codification.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

class Tables : public testing::Test {
protected:
    Tables()
        : molven(workspace.open(dossier.session.molven())),
          gencode(workspace.open(dossier.session.path(DataFile::Gencode))) {}

    Record article(const char* reference) { return articles::find(molven, QString::fromLatin1(reference)).value(); }
    QString pricesOf(const char* reference) {
        const Record found = article(reference);
        return found.value(strarticle.art_pv1) + u' ' + found.value(strarticle.art_ttc) + u' ' +
               found.value(strarticle.art_res);
    }
    void set(const char* reference, const Field& field, const char* value) {
        molven.update(strarticle, {{field, QString::fromUtf8(value)}},
                      strarticle.art_ref == QString::fromLatin1(reference));
    }

    Dossier dossier;
    Workspace workspace;
    Database molven, gencode;
};

Decimal decimalOf(const char* text) { return Decimal::parse(QString::fromLatin1(text)).value(); }

} // namespace

TEST_F(Tables, PushAPriceIntoTheArticlesOfACodeByTheirVatRate) {
    set("CUP", strarticle.art_tva, "2");
    set("GRAFT", strarticle.art_lpp, "3199999");
    using article_updates::lpp, article_updates::pushPrice, article_updates::tips;
    EXPECT_EQ(pushPrice(molven, lpp(), QStringLiteral("3100001"), decimalOf("105.50")), 5);
    EXPECT_EQ(pricesOf("HIP"), QStringLiteral("100 105.5 105.50"));
    EXPECT_EQ(pricesOf("CUP"), QStringLiteral("87.92 105.5 105.50"));
    EXPECT_EQ(pricesOf("GRAFT"), QStringLiteral("100 105.5 "));
    EXPECT_EQ(pushPrice(molven, lpp(), QStringLiteral("3199999"), Decimal(0)), 1);
    EXPECT_EQ(pricesOf("GRAFT"), QStringLiteral("0 0 0.00"));
    set("SCREW", strarticle.art_tip, "300B01");
    EXPECT_EQ(pushPrice(molven, tips(), QStringLiteral("300B01"), Decimal(211)), 1);
    EXPECT_EQ(pricesOf("SCREW"), QStringLiteral("200 211 211.00"));
}

TEST_F(Tables, WriteAReimbursementPriceAndItsArticlesTogetherOrNot) {
    const auto rowOf = [&] { return molven.find(strlpp, strlpp.lpp_code == QStringLiteral("3100001")).value(); };
    const auto save = [&](const Decimal& price, const Record& before, bool intoArticles) {
        Record row = before;
        row[strlpp.lpp_ttc] = price;
        article_updates::saveReimbursement(molven, article_updates::lpp(), row, before, intoArticles);
    };
    const Record before = rowOf();
    save(decimalOf("105.50"), before, true);
    EXPECT_EQ(pricesOf("HIP"), QStringLiteral("100 105.5 105.50"));
    EXPECT_EQ(test::dataErrorOf([&] { save(Decimal(211), before, true); }), DataError::RecordChanged);
    EXPECT_EQ(refusalOf([&] { save(Decimal(-211), rowOf(), true); }), QStringLiteral("Prix incorrect"));
    save(Decimal(422), rowOf(), false);
    EXPECT_EQ(rowOf().value(strlpp.lpp_ttc), QStringLiteral("422"));
    EXPECT_EQ(pricesOf("HIP"), QStringLiteral("100 105.5 105.50")) << "only asked for prices go on";
}

namespace {

struct TableFault {
    const CodeTable& (*kind)();
    const Number& field;
    const char* wrong;
    const char* message;
};

} // namespace

TEST_F(Tables, RefuseNumbersThatAreNone) {
    const TableFault faults[] = {{code_tables::clientTariffs, strtarifclt.tar_pvt, "", " Prix obligatoire"},
                                 {code_tables::clientTariffs, strtarifclt.tar_pvt, "-1", "Prix incorrect"},
                                 {code_tables::tipsCodes, strpartips.ttc_tips, "-0.01", "Prix incorrect"},
                                 {code_tables::panPrices, strpan.pan_pan, "-1", "Prix incorrect"},
                                 {code_tables::paymentModes, strparrgt.nbj_rglt, "30.5", "Nombre de jours incorrect"},
                                 {code_tables::paymentModes, strparrgt.jou_rglt, "1.5", "Jour du mois incorrect"},
                                 {code_tables::paymentModes, strparrgt.jou_rglt, "32", "Jour du mois incorrect"},
                                 {code_tables::vatCodes, strparfac.par1_tx, "100.01", "Taux incorrect"},
                                 {code_tables::discounts, strparrem.rem_rem, "-1", "Taux incorrect"},
                                 {code_tables::currencies, strmonnaie.mon_euro, "-1", "Taux incorrect"}};
    for (const TableFault& fault : faults) {
        const CodeTable& kind = fault.kind();
        Record record(kind.table);
        for (const Text* key : kind.key) record.set(*key, QStringLiteral("9"));
        for (const CodeTable::Required& required : kind.required) record.set(required.field, QStringLiteral("9"));
        if (&kind.table == &strtarifclt) {
            record.set(strtarifclt.tar_clt, QStringLiteral("000001"));
            record.set(strtarifclt.tar_ref, QStringLiteral("HIP"));
        }
        record.set(static_cast<const Field&>(fault.field), QString::fromLatin1(fault.wrong));
        EXPECT_EQ(refusalOf([&] { code_tables::add(molven, kind, record); }), QString::fromUtf8(fault.message))
            << fault.field.name.toStdString() << " " << fault.wrong;
        record.set(fault.field, Decimal(7));
        EXPECT_EQ(refusalOf([&] { code_tables::requireWritable(molven, kind, record, std::nullopt); }),
                  QStringLiteral("(accepté)"));
    }
}

TEST_F(Tables, GiveAFamilyItsAccountAndTheArticlesTheirPan) {
    Database compta = workspace.open(dossier.session.path(DataFile::Compta));
    const auto push = [&](const char* family, const char* account) {
        return refusalOf([&] {
            article_updates::setFamilyAccount(molven, compta, QString::fromLatin1(family),
                                              QString::fromLatin1(account));
        });
    };
    EXPECT_EQ(push("000", "7071"), QStringLiteral("Imputation comptable incorrecte"));
    EXPECT_EQ(push("XXX", "707000000"), QStringLiteral("Aucun article dans cette famille"));
    set("NOTE", strarticle.art_fam, "");
    EXPECT_EQ(push("", "707000000"), QStringLiteral(" Code obligatoire"));
    EXPECT_EQ(article("NOTE").value(strarticle.art_cpt), QStringLiteral("700000000"))
        << "no family is not the family of those without one";
    EXPECT_EQ(push("000", "707000000"), QStringLiteral("(accepté)"));
    EXPECT_EQ(article("HIP").value(strarticle.art_cpt), QStringLiteral("707000000"));
    const auto unknown =
        article_updates::setFamilyAccount(molven, compta, QStringLiteral("000"), QStringLiteral("799999999"));
    EXPECT_FALSE(unknown.isInChart);
    EXPECT_EQ(article("HIP").value(strarticle.art_cpt), QStringLiteral("799999999"));

    dossier.receive(QStringLiteral("HIP"), 1);
    EXPECT_EQ(article_updates::fillPanTable(molven), 6);
    molven.update(strpan, {{strpan.pan_pan, QStringLiteral("9")}}, strpan.pan_ref == QStringLiteral("CUP"));
    Record byHand(strpan);
    byHand[strpan.pan_ref] = QStringLiteral("A-LA-MAIN");
    byHand[strpan.pan_pan] = Decimal(3);
    molven.insert(byHand);
    set("GRAFT", strarticle.art_li1, "GREFFON");
    EXPECT_EQ(article_updates::fillPanTable(molven), 6);
    EXPECT_EQ(molven.count(strpan, strpan.pan_lib == QStringLiteral("GREFFON")), 1);
    EXPECT_EQ(article_updates::copyPurchaseToPan(molven), 1);
    const auto panOf = [&](const char* reference) {
        return molven.find(strpan, strpan.pan_ref == QString::fromLatin1(reference))->value(strpan.pan_pan);
    };
    EXPECT_EQ(panOf("HIP"), QStringLiteral("50"));
    EXPECT_EQ(panOf("CUP"), QStringLiteral("9")) << "a price typed by hand outlives a new fill";
    EXPECT_EQ(panOf("A-LA-MAIN"), QStringLiteral("3")) << "so does a row typed by hand";
    EXPECT_EQ(molven.count(strpan), 7);
}

TEST_F(Tables, TellLppCodesFromTipsCodesOnlyWhenThereIsOne) {
    const auto addLpp = [&](const char* code, const char* tips) {
        Record lpp(strlpp);
        lpp[strlpp.lpp_code] = QString::fromLatin1(code);
        lpp[strlpp.lpp_lib] = QStringLiteral("X");
        lpp[strlpp.lpp_tips] = QString::fromLatin1(tips);
        code_tables::add(molven, code_tables::lppCodes(), lpp);
    };
    addLpp("3111111", "T1");
    addLpp("3222222", "T2");
    addLpp("3333333", "T2");
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    set("HIP", strarticle.art_tip, "T1");
    set("CUP", strarticle.art_tip, "T2");
    set("GRAFT", strarticle.art_tip, "T9");
    set("HIP", strarticle.art_aig, "K"); // units follow their article, even one that is no longer followed by unit
    const auto stopped = [](const QString&) { return Progress([](int done, int) { return done == 0; }); };
    EXPECT_EQ(refusalOf([&] { lpp_codification::run(dossier.session, stopped); }),
              QStringLiteral("Opération abandonnée"));
    EXPECT_EQ(article("HIP").value(strarticle.art_lpp), QStringLiteral("3100001")) << "nothing of it is kept";
    QStringList steps;
    const QList<lpp_codification::Fault> faults = lpp_codification::run(dossier.session, [&](const QString& title) {
        steps.append(title);
        return Progress();
    });
    EXPECT_EQ(steps, QStringList({QStringLiteral("Mise à Jour des fiches Articles"),
                                  QStringLiteral("Mise à jour des des fiches Produits"),
                                  QStringLiteral("Mise à jour des des lignes des Bons Livraison")}));
    ASSERT_EQ(faults.size(), 2);
    EXPECT_EQ(faults[0].reference + faults[0].lpp, QStringLiteral("CUPMultiple"));
    EXPECT_EQ(faults[1].reference + faults[1].lpp, QStringLiteral("GRAFTInconnu"));
    EXPECT_EQ(article("CUP").value(strarticle.art_lpp), QStringLiteral("3100001"));
    EXPECT_EQ(dossier.unit(units[1]).value(strproduit.pro_lpp), QStringLiteral("3111111"));
    Database vente = workspace.open(dossier.session.vente());
    EXPECT_EQ(vente.find(strlivl, strlivl.fac_imm == units[0])->value(strlivl.fac_tip), QStringLiteral("3111111"));
}

TEST_F(Tables, KeepEanCodesWithTheirCheckDigit) {
    EXPECT_EQ(ean::checkDigit(QStringLiteral("400638133393")), QChar(u'1'));
    EXPECT_EQ(ean::checkDigit(QStringLiteral("761234567890")), QChar(u'0'));
    EXPECT_FALSE(ean::isValid(QStringLiteral("4006381333932")));
    const auto add = [&](const char* code, const char* quantity = "") {
        return refusalOf([&] { ean::add(gencode, QString::fromUtf8(code), QString::fromUtf8(quantity)); });
    };
    for (const char* wrong : {"123", "4006381333932", "40063813339A", "４００６３８１３３３９３"})
        EXPECT_EQ(add(wrong), QStringLiteral("Code EAN incorrect : ") + QString::fromUtf8(wrong));
    EXPECT_EQ(add(""), QStringLiteral(" Code obligatoire"));
    for (const char* wrong : {"0", "-1", "abc", "9999999"})
        EXPECT_EQ(add("400638133393", wrong), QStringLiteral("Quantité incorrecte")) << wrong;
    EXPECT_EQ(add("400638133393", "3"), QStringLiteral("(accepté)"));
    EXPECT_EQ(gencode.count(strgencode, startsWith(strgencode.ean_code, QStringLiteral("40063813339"))), 3);
    const qint64 before = gencode.count(strgencode);
    EXPECT_EQ(add("400638133392", "2"), QStringLiteral("Ce code existe déjà : 4006381333931"));
    EXPECT_EQ(gencode.count(strgencode), before) << "a range is added whole or not at all";
    EXPECT_EQ(refusalOf([&] { ean::remove(gencode, QStringLiteral("3760000000017")); }),
              QStringLiteral("Ce code est pris par l'article CUP"));
    EXPECT_EQ(refusalOf([&] { ean::remove(gencode, QStringLiteral("4006381333931")); }), QStringLiteral("(accepté)"));
}

TEST_F(Tables, KeepSeveralLppCodesOnlyForAnArticleThatSaysSo) {
    for (const char* code : {"3100001", "3100002", "3100003"}) {
        Record lpp(strlpp);
        lpp[strlpp.lpp_code] = QString::fromLatin1(code);
        lpp[strlpp.lpp_lib] = QStringLiteral("ESSAI");
        if (molven.count(strlpp, strlpp.lpp_code == lpp.value(strlpp.lpp_code)) == 0) molven.insert(lpp);
    }
    Database compta = workspace.open(dossier.session.path(DataFile::Compta));
    const auto save = [&](const QString& lpp, std::optional<std::array<const char*, 3>> typed) {
        articles::Entry entry = articles::entryOf(article("HIP"));
        const Record before = entry.article;
        entry.article[strarticle.art_lpp] = lpp;
        if (typed) {
            entry.severalLpp = Record(strartlpp);
            entry.severalLpp->set(strartlpp.lpp_1, QString::fromLatin1((*typed)[0]));
            entry.severalLpp->set(strartlpp.lpp_2, QString::fromLatin1((*typed)[1]));
            entry.severalLpp->set(strartlpp.lpp_3, QString::fromLatin1((*typed)[2]));
        }
        const QString refused =
            refusalOf([&] { articles::save(molven, compta, gencode, dossier.session.rules(), entry, before); });
        if (refused != u"(accepté)") return refused;
        const Record kept = articles::severalLpp(molven, QStringLiteral("HIP"));
        return QStringList{kept[strartlpp.lpp_1], kept[strartlpp.lpp_2], kept[strartlpp.lpp_3]}.join(u'/');
    };
    using Typed = std::array<const char*, 3>;
    EXPECT_EQ(save(SeveralLpp, Typed{"", "", ""}), QStringLiteral(" LPP obligatoire"));
    EXPECT_EQ(save(SeveralLpp, Typed{"3100001", "", "3100001"}), QStringLiteral("Ce code LPP est saisi deux fois"));
    EXPECT_EQ(save(SeveralLpp, Typed{"3100001", "3100002", "3100003"}), QStringLiteral("3100001/3100002/3100003"));
    EXPECT_EQ(save(SeveralLpp, {}), QStringLiteral("3100001/3100002/3100003")) << "none told, none changed";
    EXPECT_EQ(save(SeveralLpp, Typed{"", "3100002", "3100003"}), QStringLiteral("3100002/3100003/"));
    EXPECT_EQ(save(QStringLiteral("3100001"), Typed{"3100002", "", ""}), QStringLiteral("//"));
    EXPECT_EQ(molven.count(strartlpp), 0);
    EXPECT_EQ(save(SeveralLpp, Typed{"", "", "3100002"}), QStringLiteral("3100002//"));
    articles::remove(molven, gencode, QStringLiteral("HIP"));
    EXPECT_EQ(molven.count(strartlpp), 0) << "a deleted article leaves no code behind";
}

TEST_F(Tables, OfSuppliersCheckTheirCodes) {
    const std::pair<const char*, void (*)(Record&)> cases[] = {
        {" N° Fournisseur obligatoire", [](Record& s) { s[strfournis.fou_cod] = QString(); }},
        {"code invalide", [](Record& s) { s[strfournis.fou_cod] = QStringLiteral("ABC"); }},
        {" Nom obligatoire", [](Record& s) { s[strfournis.fou_nom] = QString(); }},
        {"Mode règlement obligatoire", [](Record& s) { s[strfournis.fou_rglt] = QString(); }},
        {"Mode de règlement inconnu", [](Record& s) { s[strfournis.fou_rglt] = QStringLiteral("88"); }},
        {"Client inconnu", [](Record& s) { s[strfournis.fou_clt] = QStringLiteral("77"); }},
        {"Ce code existe déjà", [](Record& s) { s[strfournis.fou_cod] = QStringLiteral("1"); }},
        {"(accepté)", [](Record& s) { s[strfournis.fou_clt] = QStringLiteral("1"); }}};
    for (const auto& [message, spoil] : cases) {
        Record supplier = parties::blankSupplier(molven);
        supplier[strfournis.fou_nom] = QStringLiteral("L'ATELIER");
        spoil(supplier);
        EXPECT_EQ(refusalOf([&] { parties::saveSupplier(molven, supplier, std::nullopt); }),
                  QString::fromUtf8(message));
    }
    EXPECT_EQ(molven.find(strfournis, strfournis.fou_cod == QStringLiteral("000002"))->value(strfournis.fou_clt),
              QStringLiteral("000001"));
}

} // namespace molven

#include "support/movements.h"

#include "dossier/check.h"
#include "dossier/family_renaming.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/stock_rebuild.h"
#include "stock/article_push.h"
#include "stock/stock_recount.h"
#include "stock/units.h"

#include <QDir>
#include <QFile>

namespace molven {

using test::Movements;
using test::refusalOf;

namespace {

bool goOn(int, int) { return true; }
bool stop(int, int) { return false; }

} // namespace

class Recounts : public Movements {
protected:
    void spoilStocks() { files.molven.update(strarticle, {{strarticle.art_stk, QStringLiteral("77")}}, {}); }
    std::optional<stock_rebuild::Result> rebuild(const char* from = "01/01/2026", const char* to = "31/12/2026") {
        return stock_rebuild::run(
            dossier.session, QString::fromLatin1(from), QString::fromLatin1(to), [](const QString&) {}, goOn);
    }
    /// A document of one kind with so many screws; answers its number.
    QString sell(const char* mode, int quantity) {
        SalesBook book(dossier.session, documentKind(QString::fromLatin1(mode)));
        const Record header = test::newDocument(book);
        document_lines::add(book, header, {test::lineOfArticle(book, header, QStringLiteral("SCREW"), quantity)});
        return header[book.kind().headers.fac_no];
    }
};

TEST_F(Recounts, OfFollowedArticlesCountTheUnitsNotInvoiced) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 4);
    dossier.document(QStringLiteral("FAC"), units.first(1));
    dossier.document(QStringLiteral("LIV"), units.sliced(1, 1));
    spoilStocks();
    EXPECT_EQ(stock_recount::count(files.molven, stop), std::nullopt);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(77));
    const auto done = stock_recount::count(files.molven, goOn);
    EXPECT_EQ(done->articles, 3);
    EXPECT_EQ(done->changed, 3);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(3));
    EXPECT_EQ(dossier.stock(QStringLiteral("CUP")), Decimal());
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(77));

    files.molven.update(strproduit, {{strproduit.pro_pac, QStringLiteral("50")}}, strproduit.imm_art == units.last());
    files.molven.update(strarticle, {{strarticle.art_pam, QStringLiteral("9")}}, {});
    stock_recount::countAndAverage(files.molven, dossier.session.rules(), goOn);
    const Decimal price = dossier.unit(units[1]).operator[](strproduit.pro_pac);
    EXPECT_EQ((*articles::find(files.molven, QStringLiteral("HIP")))[strarticle.art_pam],
              ((price + price + Decimal(50)) / Decimal(3)).rounded(2));
    EXPECT_EQ((*articles::find(files.molven, QStringLiteral("CUP")))[strarticle.art_pam], Decimal(9));
}

TEST_F(Recounts, OfMovementsCountThePeriodAndItsSales) {
    add("E", "100", "5", QStringLiteral("05/06/2025"));
    add("I", "40", "5", QStringLiteral("01/01/2026"));
    add("E", "20", "5", QStringLiteral("05/03/2026"));
    add("S", "2.5", "5", QStringLiteral("31/12/2026"));
    sell("FAC", 3);
    const QString note = sell("LIV", 4);
    sell("LIV", 5);
    SalesBook invoices(dossier.session, documentKind(QStringLiteral("FAC")));
    const Record invoice = test::newDocument(invoices);
    integration::integrate(invoices, invoice, note);
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
    spoilStocks();
    const QString year =
        QString::number(documents::blank(invoices, QStringLiteral("1")).value(strface.tri_datf).left(4).toInt());
    const auto done = stock_rebuild::run(
        dossier.session, QStringLiteral("01/01/2026"),
        QStringLiteral("31/12/") + std::max(year, QStringLiteral("2026")), [](const QString&) {}, goOn);
    EXPECT_EQ(done->lines, 3);
    EXPECT_EQ(done->absentFolders, QStringList({"CL\\", "EG\\", "SR\\"}));
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal::fromText(QStringLiteral("45.5")));
    EXPECT_EQ(dossier.stock(QStringLiteral("FEE")), Decimal());
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(77));
    rebuild("01/01/2020", "31/12/2020");
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal());
}

TEST_F(Recounts, CountTheSalesOfTheCompanyFolders) {
    sell("FAC", 3);
    QDir(dossier.session.chemin_base).mkdir(QStringLiteral("EG"));
    QFile::copy(dossier.session.vente(), dossier.session.chemin_base + QStringLiteral("EG/vente.mdb"));
    const auto done = rebuild("01/01/2020", "31/12/2099");
    EXPECT_EQ(done->absentFolders, QStringList({"CL\\", "SR\\"}));
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(-6));
}

TEST_F(Recounts, StoppedOrRefusedWriteNothing) {
    add("E", "10", "5");
    spoilStocks();
    EXPECT_FALSE(stock_rebuild::run(
        dossier.session, QStringLiteral("01/01/2026"), QStringLiteral("31/12/2026"), [](const QString&) {}, stop));
    for (const auto& [from, to, text] :
         {std::tuple("", "31/12/2026", "saisir une date"), std::tuple("01/01/2026", "", "saisir une date"),
          std::tuple("01/01/2026", "32/12/2026", "date fin non valide"),
          std::tuple("02/01/2026", "01/01/2026", "date fin < date début")})
        EXPECT_EQ(refusalOf([&, first = from, last = to] { rebuild(first, last); }), QString::fromUtf8(text));
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(77));
}

TEST_F(Recounts, FindWhatANoteTakesAgainWhenItLeavesItsInvoice) {
    const QString note = sell("LIV", 4);
    SalesBook invoices(dossier.session, documentKind(QStringLiteral("FAC")));
    const Record invoice = test::newDocument(invoices);
    integration::integrate(invoices, invoice, note);
    document_lines::remove(invoices, invoice, documents::lines(invoices, invoice).at(0));
    EXPECT_EQ(dossier.stock(QStringLiteral("SCREW")), Decimal(-4));
}

TEST_F(Recounts, CarryArticlesIntoUnitsNotSold) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("FAC"), units.first(1));
    dossier.document(QStringLiteral("LIV"), units.sliced(1, 1));
    files.molven.update(strarticle,
                        {{strarticle.art_li1, QStringLiteral("NOUVEAU")}, {strarticle.art_pv1, QStringLiteral("321")}},
                        strarticle.art_ref == QStringLiteral("HIP"));
    const article_push::Range all, hip{QStringLiteral("HIP"), QStringLiteral("HIP")};
    EXPECT_EQ(article_push::count(files.molven, hip), 2);
    EXPECT_EQ(article_push::run(files.molven, all, stop), std::nullopt);
    EXPECT_NE(dossier.unit(units[2]).value(strproduit.pro_li1), QStringLiteral("NOUVEAU"));
    const QString delivered = dossier.unit(units[1]).value(strproduit.pro_vte);
    EXPECT_EQ(article_push::run(files.molven, hip, goOn), 2);
    EXPECT_NE(dossier.unit(units[0]).value(strproduit.pro_li1), QStringLiteral("NOUVEAU"));
    EXPECT_EQ(dossier.unit(units[1]).value(strproduit.pro_li1), QStringLiteral("NOUVEAU"));
    EXPECT_EQ(dossier.unit(units[1]).value(strproduit.pro_vte), delivered);
    EXPECT_EQ(dossier.unit(units[2]).value(strproduit.pro_vte), QStringLiteral("321"));
    EXPECT_EQ(refusalOf([&] {
                  article_push::count(files.molven, {QStringLiteral("Z"), QStringLiteral("A")});
              }),
              QStringLiteral("N° Fin < N° Début ???"));
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
}

TEST_F(Recounts, RenameAFamilyWhereverItStands) {
    const auto add = [this](const QString& letter, const QString& code, const QString& family = {}) {
        Record entry(strparam);
        entry[strparam.cod_par] = letter;
        entry[strparam.num_par] = code;
        entry[strparam.cpt_par] = family;
        files.molven.insert(entry);
    };
    const QString old = QStringLiteral("OLD"), now = QStringLiteral("NEW"), taken = QStringLiteral("TAK");
    add(list::ArticleFamily, old);
    add(list::ArticleFamily, taken);
    add(list::SubFamily, QStringLiteral("001"), old);
    files.molven.update(
        strarticle, {{strarticle.art_fam, old}, {strarticle.art_crp, old}, {strarticle.art_rem, QStringLiteral("1")}},
        strarticle.art_ref == QStringLiteral("HIP"));
    Record rate(strtauxrep);
    rate[strtauxrep.c_ref] = old;
    files.molven.insert(rate);

    const auto renamed = [&](const QString& from, const QString& to) {
        return refusalOf([&] { family_renaming::rename(dossier.session, from, to); });
    };
    EXPECT_EQ(renamed({}, now), QStringLiteral(" Code obligatoire"));
    EXPECT_EQ(renamed(QStringLiteral("ZZZ"), now), QStringLiteral("Ce code n'existe pas"));
    EXPECT_EQ(renamed(old, taken), QStringLiteral("Ce code existe déjà"));
    EXPECT_EQ(family_renaming::rename(dossier.session, old, now), 1);
    const Record article = *articles::find(files.molven, QStringLiteral("HIP"));
    EXPECT_EQ(article[strarticle.art_fam] + article[strarticle.art_crp] + article[strarticle.art_rem],
              now + now + u'1');
    EXPECT_EQ(files.molven.count(strtauxrep, strtauxrep.c_ref == now), 1);
    EXPECT_EQ(files.molven.count(strparam, strparam.num_par == now), 1);
    EXPECT_EQ(files.molven.count(strparam, strparam.cod_par == list::SubFamily && strparam.cpt_par == now), 1);
    EXPECT_EQ(files.molven.count(strparam, strparam.num_par == old || strparam.cpt_par == old), 0);
}

} // namespace molven

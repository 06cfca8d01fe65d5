#include "support/dossier.h"

#include "dossier/check.h"
#include "dossier/references.h"
#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "shell/tables.h"
#include "stock/stock_tables.h"

#include <QDir>
#include <QFile>

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

/// A dossier in which a client bought, and what is archived stands in the archive.
class References : public testing::Test {
protected:
    References()
        : units(dossier.receive(QStringLiteral("HIP"), 3)),
          molven(workspace.open(dossier.session.molven())),
          historic(workspace.open(dossier.session.historic())),
          ancillaire(workspace.open(dossier.session.path(DataFile::Ancillaire))),
          compta(workspace.open(dossier.session.path(DataFile::Compta))) {
        dossier.document(QStringLiteral("LIV"), {units[0]});
        dossier.document(QStringLiteral("FAC"), {units[1]});
    }

    template <class Erase>
    QString remove(const Record& record, const Erase& erase) {
        return refusalOf([&] { references::remove(dossier.session, record, erase); });
    }
    QString removeClient(const char* code) {
        const Record client = *parties::findClient(molven, QString::fromLatin1(code));
        return remove(client, [&client](references::Files& files) {
            parties::removeClient(files[DataFile::Molven], client[strclient.clt_cod]);
        });
    }
    QString removeArticle(const char* reference) {
        const Record article = *articles::find(molven, QString::fromLatin1(reference));
        return remove(article, [&article](references::Files& files) {
            articles::remove(files[DataFile::Molven], files[DataFile::Gencode], article[strarticle.art_ref]);
        });
    }
    /// Of a small code table, by the codes of its key.
    QString removeEntry(const CodeTable& kind, DataFile file, const Criterion& which) {
        const Record record = *workspace.open(dossier.session.path(file)).find(kind.table, which);
        return remove(record, [&](references::Files& files) { code_tables::remove(files[file], kind, record); });
    }
    QString removeParameter(const QString& letter, const char* code) {
        return removeEntry(code_tables::parameters(), DataFile::Molven,
                           parameters::ofList(letter) && strparam.num_par == QString::fromLatin1(code));
    }

    Dossier dossier;
    const QStringList units;
    Workspace workspace;
    Database molven, historic, ancillaire, compta;
};

} // namespace

TEST_F(References, KeepARecordFromDeletionAndSayWhatTheyAre) {
    EXPECT_EQ(
        removeClient("1"),
        QStringLiteral("Ce client a 2 produits, 1 facture ou avoir, 1 bon de livraison : suppression impossible"));
    EXPECT_EQ(molven.count(strclient, strclient.clt_cod == QStringLiteral("000001")), 1);
    EXPECT_EQ(removeArticle("HIP"), QStringLiteral("Cet article a des produits en stock/en commande"));
    EXPECT_EQ(removeParameter(list::Depot, "102"), QStringLiteral("Ce dépôt a 1 client : suppression impossible"));
    EXPECT_EQ(removeParameter(list::DepotFamily, "OUE"),
              QStringLiteral("Cette famille a 1 paramètre : suppression impossible"));
    EXPECT_EQ(removeParameter(list::SupplierFamily, "000"), QStringLiteral("(accepté)"));
    EXPECT_EQ(removeEntry(code_tables::vatCodes(), DataFile::Molven, strparfac.par1_cde == QStringLiteral("1")),
              QStringLiteral("Ce code TVA a 6 articles, 1 ligne de facture, 1 ligne de livraison : suppression "
                             "impossible"));
    EXPECT_EQ(removeEntry(code_tables::vatCodes(), DataFile::Molven, strparfac.par1_cde == QStringLiteral("4")),
              QStringLiteral("(accepté)"));
    EXPECT_EQ(removeEntry(code_tables::paymentModes(), DataFile::Molven, strparrgt.cde_rglt == QStringLiteral("01")),
              QStringLiteral("Ce mode de règlement a 2 clients, 1 fournisseur, 1 facture ou avoir, 1 bon de "
                             "livraison : suppression impossible"));
    EXPECT_EQ(removeEntry(code_tables::accounts(), DataFile::Compta, strplan.cpt_aff == QStringLiteral("700100000")),
              QStringLiteral("Ce compte a 6 articles : suppression impossible"));
    EXPECT_EQ(removeEntry(code_tables::accounts(), DataFile::Compta, strplan.cpt_aff == QStringLiteral("411000000")),
              QStringLiteral("(accepté)"));
    EXPECT_EQ(removeEntry(code_tables::discounts(), DataFile::Molven, {}),
              QStringLiteral("Cette catégorie de remise a 1 client : suppression impossible"));
    EXPECT_EQ(removeClient("2"), QStringLiteral("(accepté)"));
}

TEST_F(References, AreLookedForInSetsTariffsArchivesAndOtherUsersFolders) {
    Record component(strnomenclature);
    component[strnomenclature.anc_article] = QStringLiteral("FEE");
    ancillaire.insert(component);
    EXPECT_EQ(removeArticle("FEE"), QStringLiteral("Cet article a 1 composant d'ancillaire : suppression impossible"));
    ancillaire.remove(strnomenclature);
    Record tariff(strtarifclt);
    tariff[strtarifclt.tar_clt] = QStringLiteral("000002");
    tariff[strtarifclt.tar_ref] = QStringLiteral("FEE");
    tariff[strtarifclt.tar_pvt] = Decimal(1);
    molven.insert(tariff);
    Record line(strlivl);
    line[strlivl.fac_ref] = QStringLiteral("FEE");
    historic.insert(line);
    EXPECT_EQ(removeArticle("FEE"), QStringLiteral("Cet article a 1 tarif spécial, 1 ligne de livraison (archives) : "
                                                   "suppression impossible"));
    const QString societe = dossier.session.path(DataFile::Societe);
    Database::create(societe, {&strsociete});
    Record row(strsociete);
    row[strsociete.soc_utilisateur] = QStringLiteral("DU");
    {
        Workspace other;
        other.open(societe).insert(row);
    }
    const QString folder = dossier.session.chemin_base + QStringLiteral("DU");
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::copy(dossier.session.vente(), folder + QStringLiteral("/vente.mdb")));
    EXPECT_TRUE(removeClient("1").contains(QStringLiteral("1 bon de livraison (dossier DU)")));
}

TEST_F(References, OfUnitsKeepTheFollowUpOfTheirArticle) {
    const auto retype = [this](const char* reference, const char* kind, const char* followed) {
        articles::Entry entry = articles::entryOf(*articles::find(molven, QString::fromLatin1(reference)));
        const Record before = entry.article;
        entry.kind = QString::fromLatin1(kind);
        entry.followed = QString::fromLatin1(followed);
        return refusalOf([&] { references::saveArticle(dossier.session, entry, before); });
    };
    const QString kept = QStringLiteral("Cet article a 3 produits : son suivi ne change plus");
    EXPECT_EQ(retype("HIP", "T", "O"), kept);
    EXPECT_EQ(retype("HIP", "A", "N"), kept);
    EXPECT_EQ(retype("HIP", "A", "O"), QStringLiteral("(accepté)"));
    {
        SalesBook credits(dossier.session, documentKind(QStringLiteral("AVO")));
        const Record header = test::newDocument(credits);
        document_lines::add(credits, header, {test::lineOfArticle(credits, header, QStringLiteral("SCREW"), 4)});
    }
    EXPECT_EQ(retype("SCREW", "A", "O"), QStringLiteral("Cet article a un stock de 4 : son suivi ne change plus"));
    EXPECT_EQ(retype("GRAFT", "A", "N"), QStringLiteral("(accepté)"));
    EXPECT_TRUE(check::run(dossier.session).isEmpty());
}

TEST_F(References, ToRecordsDeletedLongAgoAreToldByTheCheck) {
    molven.remove(strparam, parameters::ofList(list::Depot) && strparam.num_par == QStringLiteral("101"));
    molven.update(strarticle, {{strarticle.art_fou, QStringLiteral("000077")}},
                  strarticle.art_ref == QStringLiteral("CUP"));
    QStringList told;
    for (const check::Fault& fault : check::run(dossier.session))
        told.append(fault.file + u' ' + fault.subject + u' ' + fault.text);
    told.sort();
    EXPECT_EQ(told, (QStringList{QStringLiteral("molven.mdb 000077 Ce fournisseur n'existe pas : 1 article"),
                                 QStringLiteral("molven.mdb 101 Ce dépôt n'existe pas : 1 client"),
                                 QStringLiteral("molven.mdb 101 Ce dépôt n'existe pas : 2 produits"),
                                 QStringLiteral("vente.mdb 101 Ce dépôt n'existe pas : 1 bon de livraison"),
                                 QStringLiteral("vente.mdb 101 Ce dépôt n'existe pas : 1 facture ou avoir")}));
}

} // namespace molven

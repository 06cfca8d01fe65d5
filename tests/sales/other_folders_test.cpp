#include "support/faults.h"
#include "support/sales.h"

#include "data/catalogue.h"
#include "sales/archiving.h"
#include "sales/find_anything.h"
#include "sales/recall.h"
#include "sales/unit_history.h"
#include "sales/unit_removal.h"
#include "sales/unit_steps.h"
#include "stock/immatriculation.h"
#include "stock/patient_enquiry.h"

#include <QDir>

namespace molven {

using test::newDocument;
using test::refusalOf;

namespace {

/// Units of one stock, sold by two sites that keep their documents apart.
class TwoSites : public test::Sales {
protected:
    TwoSites() {
        const QString folder = dossier.session.chemin_base + QStringLiteral("GV/");
        if (!test::DataFolder::isOnServer()) QDir().mkpath(folder);
        for (const CatalogueEntry& entry : catalogue())
            if (entry.folder == Folder::User || entry.folder == Folder::Sales)
                if (const QString path = folder + entry.name; !Database::exists(path))
                    Database::create(path, tablesOf(entry.file));
        dossier.session.chemin_gv = folder;
        there = dossier.session;
        there.chemin_util = folder;
    }
    Record write(const Session& session, const char* mode, const QString& unit) {
        SalesBook opened(session, documentKind(QString::fromLatin1(mode)));
        const Record header = newDocument(opened);
        document_lines::add(opened, header, {test::lineOfUnit(opened, header, unit)});
        return header;
    }
    QString removeLineOf(const Session& session, const char* mode, const Record& header) {
        SalesBook opened(session, documentKind(QString::fromLatin1(mode)));
        return refusalOf([&] { document_lines::remove(opened, header, documents::lines(opened, header).record()); });
    }

    Session there;
};

} // namespace

TEST_F(TwoSites, GiveAUnitBackToTheSaleOfTheOtherSite) {
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    write(there, "FAC", unit);
    const QString sold = stateOf(unit);
    const Record credit = write(dossier.session, "AVO", unit);
    EXPECT_EQ(removeLineOf(dossier.session, "AVO", credit), QStringLiteral("(accepté)"));
    EXPECT_EQ(stateOf(unit), sold);
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(0));
}

TEST_F(TwoSites, DoNotUndoTheSaleOfTheOtherThatBearsTheSameNumber) {
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    const Record invoice = write(dossier.session, "FAC", unit);
    write(dossier.session, "AVO", unit);
    write(there, "FAC", unit);
    EXPECT_TRUE(removeLineOf(dossier.session, "FAC", invoice).contains(QStringLiteral("reprise ou revendue")));
    EXPECT_EQ(stateOf(unit), QStringLiteral("O/101/000001/000001"));
}

TEST_F(TwoSites, TellTheWholeStoryOfAUnit) {
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    write(there, "FAC", unit);
    write(there, "AVO", unit);
    const UnitHistory history = unit_history::find(dossier.session, unit);
    EXPECT_EQ(history.current.invoices.size(), 2);
    EXPECT_EQ(std::count_if(history.steps.begin(), history.steps.end(),
                            [](const Record& step) { return step[strsuivi.sui_arc] == u"autre dossier"; }),
              2)
        << "its number names another document here";
    EXPECT_EQ(refusalOf([&] { unit_removal::remove(dossier.session, Immatriculation::fromText(unit)); }),
              QStringLiteral("impossible de supprimer cette immatriculation"))
        << "its papers lie in the other folder";
}

TEST_F(TwoSites, SellTransferAndArchiveWithUnitsOfOneStock) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    write(there, "FAC", units[0]);
    write(dossier.session, "FAC", units[1]);
    write(there, "BTR", units[2]);
    for (const Session& session : {dossier.session, there}) EXPECT_EQ(test::faultsOf(session), QStringList());
    archiving::moveBefore(there, archive::Direction::ToHistory, QDate(2100, 1, 1), {});
    const UnitHistory history = unit_history::find(there, units[0]);
    EXPECT_FALSE(history.steps.isEmpty());
}

/// What one of them put away is as known to the other as before: nobody but that one could tell of its patient.
TEST_F(TwoSites, KnowTheUnitsThatTheOtherArchived) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    write(dossier.session, "FAC", units[0]);
    write(there, "FAC", units[1]);
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    archiving::moveBefore(there, archive::Direction::ToHistory, QDate(2100, 1, 1), {});
    ASSERT_EQ(molven.count(strproduit), 0) << "the units are one stock";

    const Session& here = dossier.session;
    EXPECT_EQ(test::faultsOf(here), QStringList());
    EXPECT_EQ(test::faultsOf(there), QStringList());
    const UnitHistory history = unit_history::find(here, units[0]);
    EXPECT_EQ(history.archived.unit.size(), 1);
    EXPECT_EQ(history.current.invoices.size(), 1);
    EXPECT_EQ(recall::find(here, {{}, {}, QStringLiteral("HIP"), {}, {}}).size(), 2);
    EXPECT_EQ(patient_enquiry::select(patient_enquiry::open(workspace, here), {}).count(), 2);
    EXPECT_EQ(FindAnything(here).answers(units[0], {Finding::Kind::Unit}).size(), 1);

    const UnitFiles files = openUnitFiles(workspace, here);
    EXPECT_EQ(refusalOf([&] { Immatriculation::imposed(files, units[1]); }),
              QStringLiteral("Cette immatriculation existe déjà"));
    EXPECT_EQ(dossier.receive(QStringLiteral("HIP"), 1).first(), Immatriculation::fromText(units[1]).plus(1).number())
        << "a number is drawn once";
    SalesBook book(here, documentKind(QStringLiteral("FAC")));
    const Record invoice = documents::last(book).value();
    EXPECT_TRUE(removeLineOf(here, "FAC", invoice).contains(QStringLiteral("archivée")));
}

} // namespace molven

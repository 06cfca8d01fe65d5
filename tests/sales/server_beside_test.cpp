#include "support/counts.h"
#include "support/movements.h"
#include "support/processes.h"
#include "support/sets.h"

#include "dossier/references.h"
#include "reference/code_tables.h"
#include "reference/parties.h"
#include "sales/document_locks.h"
#include "sales/proformas.h"

namespace molven {

namespace {

/// What a workstation of that number (1, 2) prepares and, after telling so, does.
struct DailyDeed {
    const char* name;
    void (*act)(test::Dossier&, int station, const std::function<void()>& prepared);
};

SalesBook bookOf(test::Dossier& dossier, const char* mode) {
    return SalesBook(dossier.session, documentKind(QString::fromLatin1(mode)));
}

/// A document of two units, by the number that the dossier answers.
Record written(test::Dossier& dossier, SalesBook& book, const char* reference = "HIP") {
    const QStringList units = dossier.receive(QString::fromLatin1(reference), 2);
    return documents::find(book, dossier.document(book.kind().mode, units)).value();
}

const DailyDeed DailyDeeds[] = {
    {"LineChangeAndRemoval",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         for (const char* mode : {"LIV", "FAC", "CSG", "BTR"}) {
             SalesBook book = bookOf(dossier, mode);
             const Record header = written(dossier, book);
             prepared();
             const QList<Record> lines = documents::linesRead(book, header);
             document_lines::change(book, header, lines[0], lines[0]);
             document_lines::remove(book, documents::current(book, header), lines[1]);
         }
     }},
    {"DeletionAndAbandon",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         SalesBook book = bookOf(dossier, "LIV"), transfers = bookOf(dossier, "BTR");
         const Record header = written(dossier, book), other = written(dossier, transfers);
         prepared();
         documents::remove(book, header, documents::linesRead(book, header));
         documents::abandon(transfers, other);
     }},
    {"RenewalOfATransfer",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         SalesBook book = bookOf(dossier, "BTR");
         const Record note = written(dossier, book);
         prepared();
         QStringList units;
         for (const Record& line : transfer_notes::remaining(book, note)) units.append(line[strbtrl.fac_imm]);
         transfer_notes::renew(book, transfer_notes::renewal(book, note, QStringLiteral("2")), units, {}, note);
     }},
    {"CreditNoteTakenOff",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         SalesBook invoices = bookOf(dossier, "FAC"), credits = bookOf(dossier, "AVO");
         const QString unit = documents::linesRead(invoices, written(dossier, invoices)).first()[strfacl.fac_imm];
         prepared();
         const Record header = documents::find(credits, dossier.document(QStringLiteral("AVO"), {unit})).value();
         document_lines::remove(credits, header, documents::linesRead(credits, header).first());
     }},
    {"JourneyOfASet",
     [](test::Dossier& dossier, int station, const std::function<void()>& prepared) {
         test::Sets sets(dossier.session);
         const QString type = QStringLiteral("KIT%1").arg(station);
         const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
         sets.addType(type, {{QStringLiteral("HIP"), 2}});
         prepared();
         const QString serial = sets.filled(type, units);
         set_journeys::send(sets.files, serial, QString::number(station), {});
         sets.takeBack(serial, {units[0]});
         ancillary_sets::remove(sets.files.sets(), serial);
     }},
    {"CountOfADepot",
     [](test::Dossier& dossier, int station, const std::function<void()>& prepared) {
         const QByteArray depot = station == 1 ? "101" : "102", client = QByteArray::number(station);
         const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
         test::transfer(dossier.session, units, client.constData(), "001", depot.constData());
         prepared();
         Workspace workspace;
         DepotCount count = test::countOf(workspace.open(dossier.session.molven()), depot.constData());
         for (const QString& unit : units) count.read(unit);
         count.takeBack(units[0]);
         depot_counts::drop(workspace.open(dossier.session.molven()), count.header());
     }},
    {"Movements",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         Workspace workspace;
         const MovementFiles files = openMovementFiles(workspace, dossier.session);
         Record movement = movements::blank(QStringLiteral("SCREW"));
         movement[strmvtstk.eta_stk] = movement::Entry;
         movement[strmvtstk.qte_stk] = Decimal(5);
         prepared();
         const Record kept = movements::add(files, movement), removed = movements::add(files, movement);
         movements::change(files, kept, movement);
         movements::remove(files, removed);
     }},
    {"Units",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         SalesBook book = bookOf(dossier, "FAC");
         const QString sold = documents::linesRead(book, written(dossier, book)).first()[strfacl.fac_imm];
         const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
         prepared();
         units::implant(book.molven, dossier.unit(sold), {QStringLiteral("X"), {}, QStringLiteral("10/03/2026")});
         units::changeConformity(book.molven, dossier.unit(unit), QStringLiteral("O"), {});
         Record corrected = dossier.unit(unit);
         corrected[strproduit.lot_art] = QStringLiteral("LOT");
         units::change(book.molven, corrected, dossier.unit(unit));
     }},
    {"ReferenceData",
     [](test::Dossier& dossier, int station, const std::function<void()>& prepared) {
         Workspace workspace;
         Database molven = workspace.open(dossier.session.molven());
         prepared();
         const Record client = parties::findClient(molven, QString::number(station)).value();
         Record changed = client;
         changed[strclient.clt_nom] = QStringLiteral("HOPITAL");
         parties::saveClient(molven, changed, client);
         const Record article =
             articles::find(molven, station == 1 ? QStringLiteral("HIP") : QStringLiteral("CUP")).value();
         references::saveArticle(dossier.session, articles::entryOf(article), article);
         Record parameter(strparam);
         parameter[strparam.cod_par] = list::Surgeon;
         parameter[strparam.num_par] = QStringLiteral("9%1").arg(station);
         parameter[strparam.lib_par] = QStringLiteral("CHIRURGIEN");
         code_tables::add(molven, code_tables::parameters(), parameter);
     }},
    {"ProformaDelivered",
     [](test::Dossier& dossier, int, const std::function<void()>& prepared) {
         SalesBook book(dossier.session, documentKind(QStringLiteral("PROFORMA"), DataFile::Proforma));
         const Record header = test::newDocument(book);
         document_lines::add(book, header, {test::lineOfArticle(book, header, QStringLiteral("SCREW"))});
         prepared();
         const proformas::Delivered delivered = proformas::deliver(book, header);
         SalesBook notes(book, documentKind(QStringLiteral("LIV")));
         documents::remove(notes, delivered.note, documents::linesRead(notes, delivered.note));
     }},
};

} // namespace

class OnServerBeside : public testing::TestWithParam<DailyDeed> {};

TEST_P(OnServerBeside, ADeedOfEveryDayIsDoneWhileAnotherWorkstationWrites) {
    test::Dossier dossier;
    Workspace other;
    other.open(dossier.session.molven());
    std::optional<Transaction> writing;
    GetParam().act(dossier, 1, [&] {
        writing.reset();
        writing.emplace(other, QString(), Locks::of({QStringLiteral("something else")}));
    });
    writing.reset();
    EXPECT_EQ(test::faultsOf(dossier.session), QStringList());
}

INSTANTIATE_TEST_SUITE_P(OnServer, OnServerBeside, testing::ValuesIn(DailyDeeds),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(OnServerTogether, TwoWorkstationsDoAllDeedsOfADayInEitherOrder) {
    test::Dossier dossier;
    QList<pid_t> stations;
    for (const int number : {1, 2})
        stations.append(test::station([&, number] {
            QList<DailyDeed> deeds(std::begin(DailyDeeds), std::end(DailyDeeds));
            if (number == 2) std::reverse(deeds.begin(), deeds.end());
            for (const DailyDeed& deed : deeds) deed.act(dossier, number, [] {});
        }));
    for (const pid_t child : stations) EXPECT_EQ(test::ended(child), 0);
    EXPECT_EQ(test::faultsOf(dossier.session), QStringList());
}

TEST(OnServerNames, ADocumentHasOneLockHoweverItsAddressIsSpelled) {
    test::Dossier dossier;
    Session spelled = dossier.session;
    for (QString* place : {&spelled.chemin_base, &spelled.chemin_util, &spelled.chemin_gv})
        place->replace(QStringLiteral("postgresql://molven@/"), QStringLiteral("postgresql:///"))
            .replace(QStringLiteral("?host="), QStringLiteral("?user=molven&host="));
    ASSERT_NE(spelled.chemin_base, dossier.session.chemin_base);
    const QString number = dossier.document(QStringLiteral("LIV"), dossier.receive(QStringLiteral("HIP"), 1));
    QStringList names;
    for (const Session& session : {dossier.session, spelled}) {
        SalesBook book(session, documentKind(QStringLiteral("LIV")));
        const Record header = documents::find(book, number).value();
        names.append((document_locks::ofStanding(book, header, documents::linesRead(book, header)).names() +
                      document_locks::ofNew(book, header).names())
                         .join(u'\n'));
    }
    EXPECT_EQ(names[0], names[1]);
}

} // namespace molven

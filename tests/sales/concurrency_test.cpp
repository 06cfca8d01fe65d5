#include "support/dossier.h"
#include "support/processes.h"
#include "support/sets.h"

#include "dossier/check.h"
#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/numbering.h"
#include "sales/transfer_notes.h"
#include "stock/units.h"

#include <QSet>

#include <sys/wait.h>

namespace molven {

using test::Dossier;
using test::ended;
using test::faultsOf;
using test::Killer;
using test::station;

namespace {

constexpr int Stations = 2;
constexpr int DocumentsEach = 25;

/// A delivery note with the first two units in stock: header and lines in one transaction, as one document.
void deliverTwo(const Session& session) {
    SalesBook book(session, documentKind(QStringLiteral("LIV")));
    Transaction transaction(book.workspace);
    const Record header = test::newDocument(book);
    QList<document_lines::Draft> drafts;
    Recordset units = book.molven.select(strproduit, strproduit.tes_vte == state::InStock, strproduit.imm_art);
    for (int i = 0; i < 2; ++i) drafts.append(test::lineOfUnit(book, header, units.at(i)[strproduit.imm_art]));
    document_lines::add(book, header, drafts);
    transaction.commit();
}

/// A document whose writing is cut short.
struct Deed {
    const char* name;
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    void (*prepare)(Dossier&);
    void (*act)(const Session&);
    int units = 2; ///< of a document
};

constexpr int UnitsOfTransfer = 50;

/// A transfer note with the first fifty units at the main depot.
void transferFifty(const Session& session) {
    SalesBook notes(session, documentKind(QStringLiteral("BTR")));
    const Recordset units = notes.molven.select(
        strproduit, strproduit.tes_vte == state::InStock && strproduit.num_dep == MainDepot, strproduit.imm_art);
    QStringList numbers;
    for (int i = 0; i < UnitsOfTransfer; ++i) numbers.append(units.at(i)[strproduit.imm_art]);
    Record header = documents::blank(notes, QStringLiteral("1"));
    header[strbtre.fac_depd] = MainDepot;
    transfer_notes::write(notes, header, numbers);
}

/// Sets of four units each, out at a client.
void sendSets(const Session& session, const QStringList& units) {
    test::Sets sets(session);
    sets.addType(QStringLiteral("KIT"), {{QStringLiteral("HIP"), 4}});
    for (qsizetype i = 0; i < units.size(); i += 4)
        set_journeys::send(sets.files, sets.filled(QStringLiteral("KIT"), units.mid(i, 4)), QStringLiteral("1"), {});
}

/// The first set that is out comes back: two of its units were used.
void takeFirstSetBack(const Session& session) {
    test::Sets sets(session);
    const Record set =
        sets.ancillaire
            .find(strstock, strstock.stk_anc_imm_lg == QStringLiteral("000") && strstock.stk_num_dep != SetDepot,
                  strstock.stk_anc_imm)
            .value();
    const QString serial = set[strstock.stk_anc_imm];
    const Recordset lines = ancillary_sets::lines(sets.ancillaire, serial);
    sets.takeBack(serial, {lines.at(0)[strstock.stk_imm_art], lines.at(1)[strstock.stk_imm_art]});
}

void invoiceFirstNote(const Session& session) {
    SalesBook invoices(session, documentKind(QStringLiteral("FAC")));
    Transaction transaction(invoices.workspace);
    const Record invoice = test::newDocument(invoices);
    const Recordset notes = integration::openDeliveryNotes(invoices, invoice);
    integration::integrate(invoices, invoice, notes.at(0)[strlive.fac_no]);
    transaction.commit();
}

/// The transfer note that carries on the last one, with the two units that lie there.
void renewLastTransfer(const Session& session) {
    SalesBook notes(session, documentKind(QStringLiteral("BTR")));
    const Record note = documents::last(notes).value();
    QStringList units;
    for (const Record& line : transfer_notes::remaining(notes, note)) units.append(line[strbtrl.fac_imm]);
    const bool isHome = note[strbtre.fac_depa] == MainDepot;
    const Record header = transfer_notes::renewal(notes, note, QString::number(isHome ? 2 : 1));
    transfer_notes::renew(notes, header, units, {}, note);
}

void writeNotes(Dossier& dossier) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 400);
    for (int i = 0; i < 200; ++i) dossier.document(QStringLiteral("LIV"), units.mid(i * 2, 2));
}

qint64 countOf(const Session& session, const Table& table, const Criterion& criterion = {}) {
    Workspace workspace;
    return workspace.open(session.vente()).count(table, criterion);
}

} // namespace

TEST(Workstations, NeverDrawTheSameNumberNorLoseAnUpdate) {
    Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), Stations * DocumentsEach * 2);
    QList<pid_t> stations;
    for (int i = 0; i < Stations; ++i)
        stations.append(station([&] {
            for (int document = 0; document < DocumentsEach; ++document) {
                deliverTwo(dossier.session);
                Workspace workspace;
                receipts::receive(openUnitFiles(workspace, dossier.session), dossier.session.rules(),
                                  Dossier::receipt(QStringLiteral("CUP"), 1));
            }
        }));
    for (const pid_t child : stations) EXPECT_EQ(ended(child), 0);

    Workspace workspace;
    Database vente = workspace.open(dossier.session.vente());
    QSet<QString> numbers;
    for (const Record& note : vente.select(strlive)) numbers.insert(note[strlive.fac_no]);
    EXPECT_EQ(numbers.size(), Stations * DocumentsEach);
    EXPECT_EQ(vente.greatest(strlive, strlive.fac_no),
              QStringLiteral("%1").arg(Stations * DocumentsEach, 6, 10, QLatin1Char('0')));
    EXPECT_EQ(dossier.stock(QStringLiteral("CUP")), Decimal(Stations * DocumentsEach));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Workstations, TransferOneUnitOnce) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), UnitsOfTransfer);
    QList<pid_t> stations;
    for (int i = 0; i < Stations; ++i)
        stations.append(station([&] {
            SalesBook notes(dossier.session, documentKind(QStringLiteral("BTR")));
            Record header = documents::blank(notes, QStringLiteral("1"));
            header[strbtre.fac_depd] = MainDepot;
            const QString refused = test::refusalOf([&] { transfer_notes::write(notes, header, units); });
            if (refused != u"(accepté)" && !refused.contains(u" est au dépot : 101"))
                throw std::runtime_error(refused.toStdString());
        }));
    for (const pid_t child : stations) EXPECT_EQ(ended(child), 0);
    EXPECT_EQ(countOf(dossier.session, strbtre), 1);
    EXPECT_EQ(countOf(dossier.session, strbtrl, strbtrl.fac_imm != QString()), UnitsOfTransfer);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST(Workstations, TakeASetBackOnce) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 40);
    sendSets(dossier.session, units);
    QList<pid_t> stations;
    for (int i = 0; i < Stations; ++i)
        stations.append(station([&] {
            test::Sets sets(dossier.session);
            for (int set = 1; set <= 10; ++set) {
                const QString serial = QStringLiteral("%1").arg(set, 8, 10, QLatin1Char('0'));
                const QString refused = test::refusalOf([&] { sets.takeBack(serial, units.mid(set * 4 - 4, 2)); });
                if (refused != u"(accepté)" && refused != u"Impossible, cet ancillaire est au dépôt principal" &&
                    refused != u"L'ancillaire a été modifié par un autre poste")
                    throw std::runtime_error(refused.toStdString());
            }
        }));
    for (const pid_t child : stations) EXPECT_EQ(ended(child), 0);
    EXPECT_EQ(countOf(dossier.session, strlive), 10);
    EXPECT_EQ(countOf(dossier.session, strbtre), 20);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

class KilledWriters : public testing::TestWithParam<Deed> {};

TEST_P(KilledWriters, LeaveADocumentWholeOrAbsentInEveryFile) {
    const Deed& deed = GetParam();
    Dossier dossier;
    deed.prepare(dossier);
    bool finished = false;
    int kills = 0;
    for (int n = 1; !finished; ++n) {
        ASSERT_LT(n, 400) << "the document never ends";
        const qint64 before = countOf(dossier.session, deed.headers);
        const int status = ended(station([&] {
            Killer::arm(n);
            deed.act(dossier.session);
        }));
        finished = !WIFSIGNALED(status);
        if (finished)
            ASSERT_EQ(status, 0);
        else
            ++kills;
        const qint64 documents = countOf(dossier.session, deed.headers);
        ASSERT_TRUE(documents == before || documents == before + 1) << "killed at write " << n;
        ASSERT_EQ(countOf(dossier.session, deed.lines, deed.lines.fac_imm != QString()), documents * deed.units)
            << "killed at write " << n;
        // What a kill left half-written stays: the whole dossier need not be read each time.
        if (finished || n % 10 == 0) {
            ASSERT_EQ(faultsOf(dossier.session), QStringList()) << "killed by write " << n;
        }
    }
    EXPECT_GT(kills, 50);
}

INSTANTIATE_TEST_SUITE_P(
    AtAnyWrite, KilledWriters,
    testing::Values(
        Deed{"delivery", strlive, strlivl, [](Dossier& d) { d.receive(QStringLiteral("HIP"), 400); }, deliverTwo},
        Deed{"integration", strface, strfacl, writeNotes, invoiceFirstNote},
        Deed{"renewal", strbtre, strbtrl,
             [](Dossier& d) {
                 const QStringList units = d.receive(QStringLiteral("HIP"), 2);
                 d.document(QStringLiteral("BTR"), units);
             },
             renewLastTransfer},
        Deed{"transfer", strbtre, strbtrl, [](Dossier& d) { d.receive(QStringLiteral("HIP"), 1000); }, transferFifty,
             UnitsOfTransfer},
        Deed{"return_of_a_set", strlive, strlivl,
             [](Dossier& d) { sendSets(d.session, d.receive(QStringLiteral("HIP"), 400)); }, takeFirstSetBack}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace molven

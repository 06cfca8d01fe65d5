// The deeds of every day on a server: beside the same work by the server's own interface, with how often each waits
// for an answer.

#include "bare_engine.h"
#include "bare_server.h"
#include "bench.h"
#include "dossier.h"

#include "data/clock.h"
#include "data/postgres/connection.h"
#include "data/server_address.h"
#include "sales/documents.h"
#include "sales/unit_history.h"
#include "stock/patient_enquiry.h"
#include "stock/receipt.h"
#include "stock/units.h"

namespace molven::bench {

namespace {

constexpr int UnitsReceived = 1000, LinesOfNote = 50;
const QString Received = QStringLiteral("4001"); // no other unit is received in January 2040
const QByteArray Number = "999000";

QString address() { return server_address::connection(session().chemin_base); }

/// Measures a deed and counts what it waits for.
void measure(benchmark::State& state, const std::function<void()>& deed, const std::function<void()>& undo = {}) {
    qint64 trips = 0;
    for (auto _ : state) {
        const qint64 before = postgres::Connection::roundTrips();
        deed();
        trips = postgres::Connection::roundTrips() - before;
        if (!undo) continue;
        state.PauseTiming();
        undo();
        state.ResumeTiming();
    }
    if (trips > 0) state.counters["trips"] = static_cast<double>(trips);
}

void forgetReceipt() {
    Workspace workspace;
    workspace.open(session().molven()).remove(strproduit, startsWith(strproduit.imm_art, Received));
}

void forgetNote(const QStringList& units) {
    Workspace workspace;
    Database molven = workspace.open(session().molven()), vente = workspace.open(session().vente());
    vente.remove(strlive, strlive.fac_aa == QStringLiteral("2040"));
    vente.remove(strlivl, strlivl.fac_aa == QStringLiteral("2040"));
    for (const QString& unit : units)
        molven.update(strproduit,
                      {{strproduit.tes_vte, state::InStock},
                       {strproduit.num_dep, QStringLiteral("001")},
                       {strproduit.num_vte, QString()}},
                      Immatriculation::fromText(unit).criterion());
}

void receiveByRule(benchmark::State& state) {
    Receipt made;
    made.reference = Article;
    made.supplier = QStringLiteral("000002");
    made.deliveryNumber = QStringLiteral("BL");
    made.deliveryDate = QStringLiteral("15/01/2040");
    made.quantity = QString::number(UnitsReceived);
    made.purchasePrice = QStringLiteral("200");
    made.lot = QStringLiteral("LOT");
    Workspace workspace;
    const UnitFiles files = openUnitFiles(workspace, session());
    measure(
        state, [&] { receipts::receive(files, session().rules(), made); }, forgetReceipt);
}

/// "insert into SCHEMA.TABLE (...) values ($1,...)"; an empty value of a number is none.
QByteArray serversInsertion(const Table& table, const QString& schema) {
    QStringList marks;
    for (const Field* field : table.fields()) {
        const QString mark = QStringLiteral("$%1").arg(marks.size() + 1);
        marks.append(field->kind == Field::Kind::Number ? QStringLiteral("nullif(%1::text,'')::numeric").arg(mark)
                                                        : mark);
    }
    return QStringLiteral("insert into %1.%2 (%3) values (%4)")
        .arg(schema, table.name, table.columns(), marks.join(u','))
        .toUtf8();
}

void receiveBare(benchmark::State& state) {
    BareServer server(address());
    const QByteArray insertion = serversInsertion(strproduit, QStringLiteral("molven"));
    const auto receive = [&] {
        server.send("begin");
        server.send("select * from molven.strarticle where art_ref=$1", {Article.toUtf8()});
        server.send("select * from molven.strfournis where fou_cod=$1", {"000002"});
        server.send("select max(imm_art) from molven.strproduit where pro_ann='20' and imm_art>=$1 and imm_art<$2",
                    {Received.toUtf8(), "4002"});
        server.wait();
        for (int i = 1; i <= UnitsReceived; ++i)
            server.send(insertion,
                        recordValues(strproduit, {{&strproduit.imm_art,
                                                   Received.toUtf8() + QByteArray::number(i).rightJustified(4, '0')},
                                                  {&strproduit.pro_ann, "20"},
                                                  {&strproduit.ref_art, Article.toUtf8()},
                                                  {&strproduit.tes_vte, "N"},
                                                  {&strproduit.num_dep, "001"},
                                                  {&strproduit.lot_art, "LOT"},
                                                  {&strproduit.pro_pac, "200"}}));
        server.send("update molven.strarticle set art_dpa=200,art_pam=200 where art_ref=$1", {Article.toUtf8()});
        server.send("commit");
        server.wait();
    };
    measure(state, receive, forgetReceipt);
}

void deliverByRule(benchmark::State& state) {
    const QStringList units = unitsInStock(LinesOfNote);
    SalesBook book(session(), documentKind(QStringLiteral("LIV")));
    measure(
        state, [&] { documents::createWith(book, documents::blank(book, Client), units); }, [&] { forgetNote(units); });
}

void deliverBare(benchmark::State& state) {
    const QStringList units = unitsInStock(LinesOfNote);
    BareServer server(address());
    const QByteArray header = serversInsertion(strlive, QStringLiteral("vente")),
                     line = serversInsertion(strlivl, QStringLiteral("vente"));
    const auto lineOf = [&](int number, const QByteArray& unit) {
        return recordValues(strlivl, {{&strlivl.fac_no, Number},
                                      {&strlivl.fac_aa, "2040"},
                                      {&strlivl.fac_lg, QByteArray::number(number).rightJustified(3, '0')},
                                      {&strlivl.fac_imm, unit},
                                      {&strlivl.fac_ref, Article.toUtf8()},
                                      {&strlivl.fac_ht, "482"},
                                      {&strlivl.fac_ttc, "508.51"},
                                      {&strlivl.fac_tva, "1"}});
    };
    const auto deliver = [&] {
        server.send("begin");
        server.send("select * from molven.strclient where clt_cod=$1", {Client.toUtf8()});
        server.send("select max(fac_no) from vente.strlive");
        server.send("select * from molven.strarticle where art_ref=$1", {Article.toUtf8()});
        server.send("select * from molven.strparrem where rem_clt=$1 and rem_art=$2", {"A", "1"});
        server.send("select * from molven.strparfac where par1_cde=$1", {"1"});
        for (const QString& unit : units)
            server.send("select * from molven.strproduit where pro_ann='20' and imm_art=$1", {unit.toUtf8()});
        server.wait();
        server.send(header, recordValues(strlive, {{&strlive.fac_no, Number},
                                                   {&strlive.fac_aa, "2040"},
                                                   {&strlive.fac_clt, Client.toUtf8()},
                                                   {&strlive.fac_lg, "ENT"}}));
        server.send(line, lineOf(0, {}));
        for (int i = 0; i < LinesOfNote; ++i) {
            server.send(line, lineOf(i + 1, units[i].toUtf8()));
            server.send("update molven.strproduit set tes_vte='L',num_dep='101',nbl_dep=$1,clt_dep=$2,num_vte=$1,"
                        "dat_vte='15/01/2040',tri_vte='20400115',clt_vte=$2,fam_dep='EST' where pro_ann='20' and "
                        "imm_art=$3",
                        {Number, Client.toUtf8(), units[i].toUtf8()});
        }
        server.send("select fac_tva,sum(fac_ht),sum(fac_ttc) from vente.strlivl where fac_no=$1 and fac_aa='2040' and "
                    "fac_lg<>'000' group by 1",
                    {Number});
        server.send("update vente.strlive set fac_ht=24100,fac_ttc=25425.5 where fac_no=$1", {Number});
        server.send("commit");
        server.wait();
    };
    measure(state, deliver, [&] { forgetNote(units); });
}

void traceByRule(benchmark::State& state) {
    const QString unit = tracedUnit();
    measure(state, [&] { benchmark::DoNotOptimize(unit_history::find(session(), unit)); });
}

/// The unit, its lines and the headers of their documents, in one message.
void traceBare(benchmark::State& state) {
    const QByteArray unit = tracedUnit().toUtf8();
    BareServer server(address());
    measure(state, [&] {
        for (const QByteArray schema : {"molven", "historic"})
            server.send("select * from " + schema + ".strproduit where pro_ann='20' and imm_art=$1", {unit});
        for (const QByteArray schema : {"vente.", "historic."})
            for (const QByteArray family : {"strbtr", "strliv", "strfac", "strcsg"}) {
                server.send("select * from " + schema + family + "l where fac_imm=$1 order by fac_no", {unit});
                server.send("select e.* from " + schema + family + "l l join " + schema + family +
                                "e e on e.fac_aa=l.fac_aa and e.fac_no=l.fac_no where l.fac_imm=$1",
                            {unit});
            }
        server.wait();
    });
}

void patientsByRule(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    PatientEnquiry enquiry;
    enquiry.patient = QStringLiteral("PATIENT 12");
    measure(state, [&] {
        int read = 0;
        for (const Record& unit : patient_enquiry::select({molven}, enquiry))
            read += !unit.value(strproduit.imm_art).isEmpty();
        benchmark::DoNotOptimize(read);
    });
}

void patientsBare(benchmark::State& state) {
    BareServer server(address());
    measure(state, [&] {
        server.send("select * from molven.strproduit where reg_pat>=$1 and reg_pat<$2 order by reg_pat,ref_art,pro_ann,"
                    "imm_art",
                    {"PATIENT 12", "PATIENT 13"});
        server.wait();
    });
}

} // namespace

void registerServer() {
    Clock::set(QDate(2040, 1, 15));
    add("receive_1000_units/molven", receiveByRule, 3);
    add("receive_1000_units/bare", receiveBare, 3);
    add("delivery_note_of_50/molven", deliverByRule, 3);
    add("delivery_note_of_50/bare", deliverBare, 3);
    add("trace_one_unit/molven", traceByRule, 50);
    add("trace_one_unit/bare", traceBare, 50);
    add("patients_by_prefix/molven", patientsByRule, 5);
    add("patients_by_prefix/bare", patientsBare, 5);
}

} // namespace molven::bench

#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "data/clock.h"
#include "sales/documents.h"
#include "sales/lines.h"
#include "sales/unit_history.h"
#include "sales/unit_rules.h"
#include "stock/receipt.h"
#include "stock/units.h"

namespace molven::bench {

namespace {

constexpr int UnitsDelivered = 50;
const QString Month = QStringLiteral("4001"); // no other unit is received in January 2040

Receipt receipt(int units) {
    Receipt made;
    made.reference = Article;
    made.supplier = QStringLiteral("000002");
    made.deliveryNumber = QStringLiteral("BL");
    made.deliveryDate = QStringLiteral("15/01/2040");
    made.quantity = QString::number(units);
    made.purchasePrice = QStringLiteral("200");
    made.lot = QStringLiteral("LOT");
    return made;
}

/// Without a word in the journal: what the deletions write there would weigh on what is measured next.
void forgetReceipt() {
    BareEngine engine({session().molven()});
    const auto removal = engine.prepare(QStringLiteral("delete from strproduit where substr(imm_art,1,length(?1))=?1"));
    BareEngine::run(removal, {Month.toUtf8()});
}

void receiveByRule(benchmark::State& state, int units) {
    Workspace workspace;
    const UnitFiles files = openUnitFiles(workspace, session());
    for (auto _ : state) {
        receipts::receive(files, session().rules(), receipt(units));
        state.PauseTiming();
        forgetReceipt();
        state.ResumeTiming();
    }
}

std::vector<QByteArray> unitValues(int number) {
    std::vector<QByteArray> values(static_cast<std::size_t>(strproduit.fields().size()), QByteArray(""));
    const auto put = [&values](const Field& field, const QByteArray& value) {
        values[static_cast<std::size_t>(field.position)] = value;
    };
    put(strproduit.imm_art, (Month + QString::number(number).rightJustified(4, u'0')).toUtf8());
    put(strproduit.pro_ann, "20");
    put(strproduit.ref_art, Article.toUtf8());
    put(strproduit.pro_li1, "COMPOSANT FEMORAL GENOU TAILLE 1");
    put(strproduit.tes_vte, "N");
    put(strproduit.num_dep, "001");
    put(strproduit.lot_art, "LOT");
    put(strproduit.pro_pac, "200");
    put(strproduit.fou_cde, "000002");
    put(strproduit.dat_liv, "15/01/2040");
    put(strproduit.tri_liv, "20400115");
    return values;
}

void receiveBare(benchmark::State& state, int units) {
    BareEngine engine({session().molven()});
    const auto article = engine.prepare(QStringLiteral("select * from strarticle where art_ref = ?"));
    const auto supplier = engine.prepare(QStringLiteral("select * from strfournis where fou_cod = ?"));
    const auto depot = engine.prepare(QStringLiteral("select * from strparam where cod_par = 'D' and num_par = ?"));
    const auto last = engine.prepare(
        QStringLiteral("select max(imm_art) from strproduit where pro_ann = '20' and imm_art >= ? and imm_art < ?"));
    const auto insert = engine.prepare(insertion(strproduit, QStringLiteral("main")));
    const auto update = engine.prepare(QStringLiteral(
        "update strarticle set art_stk = art_stk + 0, art_dpa = '200', art_pam = '200' where art_ref = ?"));
    for (auto _ : state) {
        engine.execute("begin immediate");
        BareEngine::run(article, {Article.toUtf8()});
        BareEngine::run(supplier, {"000002"});
        BareEngine::run(depot, {"001"});
        BareEngine::run(last, {Month.toUtf8(), "4002"});
        for (int i = 1; i <= units; ++i) BareEngine::run(insert, unitValues(i));
        BareEngine::run(update, {Article.toUtf8()});
        engine.execute("commit");
        state.PauseTiming();
        forgetReceipt();
        state.ResumeTiming();
    }
}

/// One delivery note as a whole: header, a hidden record, 50 lines, 50 units, totals.
Record deliver(SalesBook& book, const QStringList& units) {
    Transaction transaction(book.workspace);
    const Record header = documents::create(book, documents::blank(book, Client));
    QList<document_lines::Draft> drafts;
    for (const QString& number : units) {
        const Record unit = unit_rules::check(book, header, number);
        drafts.append(document_lines::ofUnit(book, header, unit));
    }
    document_lines::add(book, header, drafts);
    transaction.commit();
    return header;
}

void deliverByRule(benchmark::State& state) {
    const QStringList units = unitsInStock(UnitsDelivered);
    SalesBook book(session(), documentKind(QStringLiteral("LIV")));
    for (auto _ : state) {
        const Record header = deliver(book, units);
        state.PauseTiming();
        documents::remove(book, header, documents::linesRead(book, header));
        state.ResumeTiming();
    }
}

void deliverBare(benchmark::State& state) {
    const QStringList units = unitsInStock(UnitsDelivered);
    BareEngine engine({session().molven(), session().vente()});
    const auto client = engine.prepare(QStringLiteral("select * from strclient where clt_cod = ?"));
    const auto number = engine.prepare(QStringLiteral("select max(fac_no) from f1.strlive"));
    const auto unit = engine.prepare(QStringLiteral("select * from strproduit where pro_ann = '20' and imm_art = ?"));
    const auto article = engine.prepare(QStringLiteral("select * from strarticle where art_ref = ?"));
    const auto discount = engine.prepare(QStringLiteral("select * from strparrem where rem_clt = ? and rem_art = ?"));
    const auto tariff = engine.prepare(QStringLiteral("select * from strtarifclt where tar_clt = ? and tar_ref = ?"));
    const auto vat = engine.prepare(QStringLiteral("select * from strparfac where par1_cde = ?"));
    const auto depot = engine.prepare(QStringLiteral("select * from strparam where cod_par = 'D' and num_par = ?"));
    const auto header = engine.prepare(insertion(strlive, QStringLiteral("f1")));
    const auto line = engine.prepare(insertion(strlivl, QStringLiteral("f1")));
    const auto move = engine.prepare(QStringLiteral("update strproduit set "
                                                    "tes_vte='L',num_dep='101',nbl_dep=?1,clt_dep=?2,nom_dep='X',num_"
                                                    "vte=?1,dat_vte='15/01/2040',tri_vte='20400115',"
                                                    "clt_vte=?2,ref_vte='',fam_dep='EST',pro_vte='482',pro_lpp='"
                                                    "3100001',pro_mon='EUR',reg_pat='',reg_clt=?2,reg_dat='15/01/2040' "
                                                    "where pro_ann='20' and imm_art=?3"));
    const auto totals = engine.prepare(QStringLiteral("select fac_tva,sum(fac_ht),sum(fac_ttc) from f1.strlivl where "
                                                      "fac_no = ? and fac_aa = '2040' and fac_lg <> '000' group by 1"));
    const auto total =
        engine.prepare(QStringLiteral("update f1.strlive set fac_ht='24100',fac_ttc='25425.5' where fac_no = ?"));
    const QByteArray document("999000");
    for (auto _ : state) {
        engine.execute("begin immediate");
        BareEngine::run(client, {Client.toUtf8()});
        BareEngine::run(number, {});
        BareEngine::run(header, recordValues(strlive, {{&strlive.fac_no, document},
                                                       {&strlive.fac_aa, "2040"},
                                                       {&strlive.fac_clt, Client.toUtf8()},
                                                       {&strlive.fac_lg, "ENT"}}));
        BareEngine::run(
            line,
            recordValues(strlivl, {{&strlivl.fac_no, document}, {&strlivl.fac_aa, "2040"}, {&strlivl.fac_lg, "000"}}));
        for (int i = 0; i < UnitsDelivered; ++i) {
            const QByteArray immatriculation = units[i].toUtf8();
            BareEngine::run(unit, {immatriculation});
            BareEngine::run(article, {Article.toUtf8()});
            BareEngine::run(client, {Client.toUtf8()});
            BareEngine::run(discount, {"A", "1"});
            BareEngine::run(tariff, {Client.toUtf8(), Article.toUtf8()});
            BareEngine::run(vat, {"1"});
            BareEngine::run(depot, {"101"});
            BareEngine::run(line,
                            recordValues(strlivl, {{&strlivl.fac_no, document},
                                                   {&strlivl.fac_aa, "2040"},
                                                   {&strlivl.fac_lg, QByteArray::number(i + 1).rightJustified(3, '0')},
                                                   {&strlivl.fac_imm, immatriculation},
                                                   {&strlivl.fac_ref, Article.toUtf8()},
                                                   {&strlivl.fac_ht, "482"},
                                                   {&strlivl.fac_ttc, "508.51"},
                                                   {&strlivl.fac_tva, "1"}}));
            BareEngine::run(move, {document, Client.toUtf8(), immatriculation});
        }
        BareEngine::run(totals, {document});
        BareEngine::run(total, {document});
        engine.execute("commit");
        state.PauseTiming();
        Workspace workspace;
        Database molven = workspace.open(session().molven());
        Database vente = workspace.open(session().vente());
        vente.remove(strlive, strlive.fac_no == QStringLiteral("999000"));
        vente.remove(strlivl, strlivl.fac_no == QStringLiteral("999000"));
        for (const QString& moved : units)
            molven.update(strproduit,
                          {{strproduit.tes_vte, state::InStock},
                           {strproduit.num_dep, QStringLiteral("001")},
                           {strproduit.num_vte, QString()}},
                          Immatriculation::fromText(moved).criterion());
        state.ResumeTiming();
    }
}

void traceByRule(benchmark::State& state) {
    const QString unit = tracedUnit();
    for (auto _ : state) benchmark::DoNotOptimize(unit_history::find(session(), unit));
}

void traceBare(benchmark::State& state) {
    const QByteArray unit = tracedUnit().toUtf8();
    for (auto _ : state) {
        BareEngine engine({session().molven(), session().vente(), session().historic()});
        for (const char* schema : {"main", "f2"})
            BareEngine::run(
                engine.prepare(QStringLiteral("select * from %1.strproduit where pro_ann = '20' and imm_art = ?")
                                   .arg(QLatin1String(schema))),
                {unit});
        for (const char* schema : {"f1", "f2"})
            for (const char* table : {"strbtrl", "strlivl", "strfacl", "strcsgl"})
                BareEngine::run(engine.prepare(QStringLiteral("select * from %1.%2 where fac_imm = ? order by fac_no")
                                                   .arg(QLatin1String(schema), QLatin1String(table))),
                                {unit});
    }
}

} // namespace

void registerRules() {
    Clock::set(QDate(2040, 1, 15));
    for (const int units : {1000, 5000}) {
        const std::string deed = "receive_" + std::to_string(units) + "_units";
        const auto byRule = [units](benchmark::State& state) { receiveByRule(state, units); };
        add(deed + "/molven", byRule, 3);
        addUnjournalled(deed, byRule, 3);
        add(
            deed + "/bare", [units](benchmark::State& state) { receiveBare(state, units); }, 3);
    }
    add("delivery_note_of_50/molven", deliverByRule, 3);
    add("delivery_note_of_50/bare", deliverBare, 3);
    add("trace_one_unit/molven", traceByRule, 50);
    add("trace_one_unit/bare", traceBare, 50);
}

} // namespace molven::bench

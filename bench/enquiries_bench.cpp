#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "data/database.h"
#include "sales/document_tables.h"
#include "sales/recall.h"
#include "stock/patient_enquiry.h"
#include "stock/unit_listing.h"

namespace molven::bench {

namespace {

const QString Patients = QStringLiteral("PATIENT 12");
const QString Lot = QStringLiteral("LOT7");
const QString ExpiryLimit = QStringLiteral("06/2027");

int readAll(const Recordset& records) {
    int read = 0;
    for (const Record& record : records) read += !record[strproduit.imm_art].isEmpty();
    return read;
}

void patientsByRule(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    PatientEnquiry enquiry;
    enquiry.patient = Patients;
    enquiry.sort = PatientEnquiry::Sort::Patient;
    for (auto _ : state) benchmark::DoNotOptimize(readAll(patient_enquiry::select({molven}, enquiry)));
}

void patientsBare(benchmark::State& state) {
    BareEngine engine({session().molven()});
    const auto patients =
        engine.prepare(QStringLiteral("select * from strproduit where reg_pat >= ? and reg_pat < ? "
                                      "and substr(reg_pat,1,10) = ? order by reg_pat, ref_art, pro_ann, imm_art"));
    const QByteArray first = Patients.toUtf8(), end = (Patients + QChar(0xFFFF)).toUtf8();
    for (auto _ : state) benchmark::DoNotOptimize(BareEngine::run(patients, {first, end, first}));
}

void recallByRule(benchmark::State& state) {
    RecallQuery query;
    query.lot = Lot;
    for (auto _ : state) benchmark::DoNotOptimize(recall::find(session(), query).size());
}

void recallBare(benchmark::State& state) {
    for (auto _ : state) {
        BareEngine engine({session().molven(), session().vente(), session().historic()});
        const auto units = engine.prepare(
            QStringLiteral("select * from main.strproduit where lot_art = ?1 union all select * from f2.strproduit "
                           "where lot_art = ?1"));
        const auto client = engine.prepare(QStringLiteral("select * from strclient where clt_cod = ?"));
        const auto line = engine.prepare(QStringLiteral("select * from f1.strlivl where fac_imm = ? and fac_no = ?"));
        const auto header = engine.prepare(QStringLiteral("select * from f1.strlive where fac_no = ? and fac_aa = ?"));
        const int found = BareEngine::run(units, {Lot.toUtf8()});
        for (int i = 0; i < found; ++i) {
            BareEngine::run(client, {Client.toUtf8()});
            if (i % 10 >= 3) continue; // three in ten have a delivery note
            const QByteArray document = QByteArray::number(1051 + i / 10 * 3 + i % 10).rightJustified(6, '0');
            BareEngine::run(line, {"1601" + QByteArray::number(3501 + i), document});
            BareEngine::run(header, {document, "2026"});
        }
    }
}

ListingSelection expiring() {
    ListingSelection selection;
    selection.values = {{QStringLiteral("txtnum_dep"), QStringLiteral("001")},
                        {QStringLiteral("txtdat_per"), ExpiryLimit}};
    return selection;
}

void listingByRule(benchmark::State& state) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    for (auto _ : state) {
        const Criterion criterion = unit_listing::criterion(molven, expiring());
        benchmark::DoNotOptimize(molven.count(strproduit, criterion));
        benchmark::DoNotOptimize(readAll(molven.select(strproduit, criterion, unit_listing::order({}))));
    }
}

void listingBare(benchmark::State& state) {
    BareEngine engine({session().molven()});
    const QString condition =
        QStringLiteral("from strproduit where num_dep = '001' and dat_per <> '' and substr(dat_per,4,4) || "
                       "substr(dat_per,1,2) <= '202706'");
    const auto count = engine.prepare(QStringLiteral("select count(*) ") + condition);
    const auto list =
        engine.prepare(QStringLiteral("select * ") + condition + QStringLiteral(" order by ref_art, pro_ann, imm_art"));
    for (auto _ : state) {
        BareEngine::run(count, {});
        BareEngine::run(list, {});
    }
}

} // namespace

void registerEnquiries() {
    add("patients_by_prefix/molven", patientsByRule, 5);
    add("patients_by_prefix/bare", patientsBare, 5);
    add("recall_of_500_units/molven", recallByRule, 5);
    add("recall_of_500_units/bare", recallBare, 5);
    add("list_depot_and_expiry/molven", listingByRule, 3);
    add("list_depot_and_expiry/bare", listingBare, 3);
}

} // namespace molven::bench

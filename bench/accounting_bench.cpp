#include "accounting/client_accounts.h"
#include "accounting/sales_report.h"
#include "accounting/transfer.h"
#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

namespace molven::bench {

namespace {

const Period Year{QStringLiteral("20260101"), QStringLiteral("20261231")};

/// 100,000 invoices of three lines, of 40 clients and 50,000 articles, one in five with a discount on the whole; made
/// once a run.
void fillInvoices() {
    BareEngine engine({session().vente(), session().molven()});
    const auto filled = engine.prepare(QStringLiteral("select 1 from strface limit 1 offset 99999"));
    if (BareEngine::run(filled, {}) > 0) return;
    engine.execute("begin");
    engine.execute(
        "insert into strface (fac_aa,fac_no,fac_lg,fac_clt,fac_nom,fac_datf,tri_datf,fac_rep,fac_mon,fac_rem,fac_esc,"
        "fac_port,fac_exo,fac_ht,fac_ttc,fac_tv1,fac_tvp,fac_cpt,fac_mode,fac_ech) "
        "with recursive n(i) as (select 1 union all select i+1 from n where i<100000) "
        "select '2026',printf('%06d',i),'ENT',printf('%06d',i%40+1),'CLINIQUE',printf('%02d/%02d/2026',i%28+1,i%12+1),"
        "printf('2026%02d%02d',i%12+1,i%28+1),printf('%03d',i%6+1),'EUR',case when i%5=0 then 10 end,0,0,0,"
        "case when i%5=0 then 270 else 300 end,case when i%5=0 then 284.85 else 316.5 end,"
        "case when i%5=0 then 14.85 else 16.5 end,0,'N','FAC','31/12/2026' from n");
    engine.execute(
        "insert into strfacl "
        "(fac_aa,fac_no,fac_lg,fac_ref,fac_li1,fac_qte,fac_pa,fac_px,fac_remx,fac_pv,fac_ht,fac_ttc,"
        "fac_tva,fac_tar,fac_imp) "
        "with recursive n(i) as (select 0 union all select i+1 from n where i<299999) "
        "select "
        "'2026',printf('%06d',i/3+1),printf('%03d',i%3+1),printf('A%05d',i*7%50000),'IMPLANT',1,60,100,0,100,100,"
        "105.5,'1','H','700000000' from n");
    engine.execute("commit");
}

sales_statistics::Files openLines(Workspace& workspace) {
    fillInvoices();
    return sales_statistics::openFiles(workspace, session());
}

void regenerateByRule(benchmark::State& state) {
    Workspace workspace;
    const auto files = openLines(workspace);
    for (auto _ : state) sales_statistics::regenerate(files, statd, Year);
}

/// The same rows by one statement for the bare engine, which rounds binary fractions.
void regenerateBare(benchmark::State& state) {
    fillInvoices();
    BareEngine engine({session().tri(), session().vente(), session().molven()});
    for (auto _ : state) {
        engine.execute("begin immediate");
        engine.execute("delete from main.statd");
        engine.execute(
            "insert into main.statd "
            "(sta_aa,sta_no,sta_lg,sta_imm,sta_ref,sta_li1,sta_li2,sta_id1,sta_id2,sta_pvt,sta_typ,"
            "sta_ste,sta_dst,sta_dpr,sta_qte,sta_pa,sta_px,sta_remx,sta_pv,sta_ht,sta_tva,sta_nho,sta_tip,sta_dep,"
            "sta_tar,sta_ttc,sta_cpt,sta_fimm,sta_fref,sta_imp,sta_nbl,sta_clt,sta_datf,sta_mon,sta_eur,sta_rep,sta_"
            "rem,"
            "sta_chr,sta_fam,sta_fou,sta_crp,sta_cdf,sta_nom,sta_brut,sta_net,sta_achat,sta_mac,sta_cp,sta_vil,sta_dpt,"
            "sta_vte,sta_marge,sta_pourc) select *,round(net-achat,2),case when net<>0 then "
            "round(100*(net-achat)/net,2) "
            "else 0 end from (select l.fac_aa,l.fac_no,l.fac_lg,l.fac_imm,l.fac_ref,l.fac_li1,l.fac_li2,l.fac_id1,"
            "l.fac_id2,l.fac_pvt,l.fac_typ,l.fac_ste,l.fac_dst,l.fac_dpr,l.fac_qte,l.fac_pa,l.fac_px,l.fac_remx,l.fac_"
            "pv,"
            "l.fac_ht,l.fac_tva,l.fac_nho,l.fac_tip,l.fac_dep,l.fac_tar,l.fac_ttc,l.fac_cpt,l.fac_fimm,l.fac_fref,"
            "l.fac_imp,l.fac_nbl,h.fac_clt,h.tri_datf,h.fac_mon,h.fac_eur,h.fac_rep,h.fac_rem,h.fac_chr,"
            "coalesce(art_fam,''),coalesce(art_fou,''),coalesce(art_crp,''),coalesce(clt_fam,''),coalesce(clt_nom,''),"
            "round(l.fac_qte*l.fac_px,2),round(l.fac_ht*(100-coalesce(h.fac_rem,0))*(100-coalesce(h.fac_esc,0))/"
            "10000.0,2) "
            "as net,round(l.fac_qte*l.fac_pa,2) as achat,substr(h.tri_datf,1,6),substr(coalesce(clt_l5,''),1,5),"
            "substr(coalesce(clt_l5,''),7),substr(coalesce(clt_l5,''),1,2),l.fac_imp "
            "from f1.strface h cross join f1.strfacl l on l.fac_no=h.fac_no and l.fac_aa=h.fac_aa and l.fac_lg<>'000' "
            "left join f2.strarticle a on a.art_ref=l.fac_ref left join f2.strclient c on c.clt_cod=h.fac_clt "
            "left join f2.strparfac v on v.par1_cde=l.fac_tva "
            "where h.tri_datf>='20260101' and h.tri_datf<='20261231' and h.fac_lg='ENT')");
        engine.execute("commit");
    }
}

void reportByRule(benchmark::State& state, const char* number) {
    Workspace workspace;
    const auto files = openLines(workspace);
    sales_statistics::regenerate(files, statd, Year);
    statistics::Query query;
    query.period = Year;
    for (auto _ : state) {
        const statistics::SalesReport report(files, statistics::report(QString::fromLatin1(number)), query);
        benchmark::DoNotOptimize(report.level({}, statistics::Sorting::ByAmount).size());
    }
}

void reportBare(benchmark::State& state, const char* keys) {
    fillInvoices();
    BareEngine engine({session().tri()});
    const auto groups = engine.prepare(
        QStringLiteral("select count(*),sum(sta_net),sum(sta_qte),sum(sta_brut),sum(sta_achat),%1 from statd "
                       "group by %1 order by %1")
            .arg(QString::fromLatin1(keys)));
    const auto months = engine.prepare(QStringLiteral("select sta_mac,sum(sta_net) from statd group by sta_mac"));
    for (auto _ : state) {
        benchmark::DoNotOptimize(BareEngine::run(groups, {}));
        benchmark::DoNotOptimize(BareEngine::run(months, {}));
    }
}

void undoTransfer() {
    BareEngine engine({session().vente(), session().path(DataFile::Compta)});
    engine.execute("begin");
    engine.execute("delete from f1.strecrit");
    engine.execute("update strface set fac_cpt='N' where fac_cpt='T'");
    engine.execute("commit");
}

void transferByRule(benchmark::State& state) {
    Workspace workspace;
    openLines(workspace);
    const auto files = transfer::openFiles(workspace, session());
    client_accounts::open(files.lines.molven, files.lines.compta);
    undoTransfer();
    const transfer::Control control = transfer::control(files, QStringLiteral("31/12/2026"));
    for (auto _ : state) {
        transfer::run(files, control);
        state.PauseTiming();
        undoTransfer();
        state.ResumeTiming();
    }
}

/// Entries by three statements, without control of the accounts, and without journal.
void transferBare(benchmark::State& state) {
    fillInvoices();
    undoTransfer();
    for (auto _ : state) {
        BareEngine engine({session().vente(), session().path(DataFile::Compta), session().molven()});
        engine.execute("begin immediate");
        engine.execute(
            "insert into f1.strecrit (ecr_num,ecr_lg,ecr_jou,ecr_dat,tri_dat,ecr_cpt,ecr_clt,ecr_lib,ecr_deb,ecr_ech,"
            "ecr_aa,ecr_no,ecr_mod,ecr_trf,ecr_jtr) select fac_no||'00','001','VE',fac_datf,tri_datf,'411'||clt_cpt,"
            "fac_clt,'Facture '||fac_no||' '||fac_nom,fac_ttc,fac_ech,fac_aa,fac_no,fac_mode,'000001','20261231' "
            "from strface left join f2.strclient on clt_cod=fac_clt where fac_cpt<>'T'");
        engine.execute(
            "insert into f1.strecrit (ecr_num,ecr_lg,ecr_jou,ecr_dat,tri_dat,ecr_cpt,ecr_clt,ecr_lib,ecr_cre,ecr_tva,"
            "ecr_aa,ecr_no,ecr_mod,ecr_trf,ecr_jtr) select "
            "h.fac_no||'00','002','VE',fac_datf,tri_datf,fac_imp,h.fac_clt,"
            "'Facture '||h.fac_no||' "
            "'||fac_nom,round(sum(l.fac_ht)*(100-coalesce(h.fac_rem,0))/100.0,2),l.fac_tva,h.fac_aa,"
            "h.fac_no,fac_mode,'000001','20261231' from strface h cross join strfacl l on l.fac_no=h.fac_no and "
            "l.fac_aa=h.fac_aa and l.fac_lg<>'000' where h.fac_cpt<>'T' group by h.fac_no,h.fac_aa,fac_imp,l.fac_tva");
        engine.execute(
            "insert into f1.strecrit (ecr_num,ecr_lg,ecr_jou,ecr_dat,tri_dat,ecr_cpt,ecr_clt,ecr_lib,ecr_cre,ecr_tva,"
            "ecr_aa,ecr_no,ecr_mod,ecr_trf,ecr_jtr) select "
            "fac_no||'00','003','VE',fac_datf,tri_datf,'445710000',fac_clt,"
            "'Facture '||fac_no||' '||fac_nom,fac_tv1,'1',fac_aa,fac_no,fac_mode,'000001','20261231' from strface "
            "where fac_cpt<>'T'");
        engine.execute("update strface set fac_cpt='T' where fac_cpt<>'T'");
        engine.execute("commit");
        state.PauseTiming();
        undoTransfer();
        state.ResumeTiming();
    }
}

} // namespace

void registerAccounting() {
    add("statistics_300000_lines/molven", regenerateByRule, 1);
    add("statistics_300000_lines/bare", regenerateBare, 1);
    const std::pair<const char*, const char*> reports[] = {{"1", "sta_clt"},
                                                           {"5", "sta_clt,sta_ref"},
                                                           {"52", "sta_clt,sta_fam,sta_no"},
                                                           {"98", "sta_vte,sta_tva"},
                                                           {"99", "sta_mac"}};
    for (const auto& [number, keys] : reports) {
        const std::string deed = std::string("report_") + number;
        add(
            deed + "/molven", [number](benchmark::State& state) { reportByRule(state, number); }, 2);
        add(
            deed + "/bare", [keys](benchmark::State& state) { reportBare(state, keys); }, 2);
    }
    add("transfer_100000_invoices/molven", transferByRule, 1);
    add("transfer_100000_invoices/bare", transferBare, 1);
}

} // namespace molven::bench

#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "dossier/day_work.h"
#include "sales/find_anything.h"

namespace molven::bench {

namespace {

const QDate Today(2027, 6, 15); ///< units of the dossier expire from 2027 on

using Kind = Finding::Kind;
const QSet<Kind> Everything{Kind::Unit, Kind::Document, Kind::Client,  Kind::Patient, Kind::Article,
                            Kind::Lot,  Kind::Set,      Kind::SetType, Kind::Supplier};

void figuresByRule(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(day_work::count(session(), Today));
}

/// The counts alone that a dossier without endowments and invoices comes to.
void figuresBare(benchmark::State& state) {
    for (auto _ : state) {
        BareEngine engine({session().molven(), session().vente(), session().path(DataFile::Proforma)});
        for (const char* notes : {"f1.strlive", "f2.strface"})
            BareEngine::run(engine.prepare(QStringLiteral("select count(*),sum(fac_ht),min(tri_datf) from %1 "
                                                          "where fac_cpt in ('N','')")
                                               .arg(QLatin1String(notes))),
                            {});
        const auto expiring = engine.prepare(QStringLiteral(
            "select num_dep,count(*) from strproduit where tes_vte='N' and dat_per in (?,?,?,?) group by 1"));
        BareEngine::run(expiring, {"06/2027", "07/2027", "08/2027", "09/2027"});
        BareEngine::run(expiring, {"01/2027", "02/2027", "03/2027", "04/2027"});
        BareEngine::run(
            engine.prepare(QStringLiteral("select count(*) from strproduit where reg_pat='' and tes_vte='O'")), {});
        BareEngine::run(engine.prepare(QStringLiteral("select tri_datf,sum(fac_ht) from f1.strface where tri_datf >= "
                                                      "'20250701' group by 1")),
                        {});
    }
}

/// One key each: the first digits of an immatriculation, a name, a number, a lot, a supplier's code.
void searchByRule(benchmark::State& state, const QString& typed) {
    FindAnything finder(session());
    for (auto _ : state) benchmark::DoNotOptimize(finder.answers(typed, Everything));
}

void searchBare(benchmark::State& state, const QString& typed) {
    BareEngine engine({session().molven(), session().vente()});
    const QByteArray first = typed.toUtf8(), end = (typed + QChar(0xFFFF)).toUtf8();
    std::vector<BareEngine::Statement> statements;
    for (const char* field : {"imm_art", "fou_imm", "reg_pat", "lot_art"}) {
        const QString century = QLatin1String(field) == u"imm_art" ? QStringLiteral("pro_ann='20' and ") : QString();
        statements.push_back(
            engine.prepare(QStringLiteral("select * from strproduit where %2%1 >= ? and %1 < ? order by %1 limit 5")
                               .arg(QLatin1String(field), century)));
    }
    for (const char* field : {"art_ref", "art_rfou", "art_ean", "art_li1"})
        statements.push_back(
            engine.prepare(QStringLiteral("select * from strarticle where %1 >= ? and %1 < ? order by %1 limit 5")
                               .arg(QLatin1String(field))));
    for (const char* table : {"strlive", "strface", "strcsge", "strbtre"})
        statements.push_back(engine.prepare(
            QStringLiteral("select * from f1.%1 where fac_no >= ? and fac_no < ? order by fac_no limit 5")
                .arg(QLatin1String(table))));
    for (auto _ : state)
        for (const auto& statement : statements) BareEngine::run(statement, {first, end});
}

} // namespace

void registerHome() {
    add("home_figures/molven", figuresByRule, 3);
    if (!isOnServer()) add("home_figures/bare", figuresBare, 3);
    const std::pair<const char*, QString> words[] = {{"immatriculation", QStringLiteral("1603")},
                                                     {"first_digit", QStringLiteral("1")},
                                                     {"patient", QStringLiteral("patient 12")},
                                                     {"letter", QStringLiteral("p")},
                                                     {"lot", QStringLiteral("LOT19")},
                                                     {"document", QStringLiteral("1234")},
                                                     {"article", QStringLiteral("implant")},
                                                     {"nothing", QStringLiteral("zzz")}};
    for (const auto& [name, typed] : words) {
        const std::string deed = std::string("search_") + name;
        add(
            deed + "/molven", [typed = typed](benchmark::State& state) { searchByRule(state, typed); }, 20);
        if (isOnServer()) continue;
        add(
            deed + "/bare", [typed = typed](benchmark::State& state) { searchBare(state, typed); }, 20);
    }
}

} // namespace molven::bench

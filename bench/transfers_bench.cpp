#include "bare_engine.h"
#include "bench.h"
#include "dossier.h"

#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/set_journeys.h"
#include "sales/transfer_notes.h"
#include "stock/set_types.h"
#include "stock/units.h"

namespace molven::bench {

namespace {

constexpr int UnitsTransferred = 200;
constexpr int UnitsOfSet = 60;
const QString Kit = QStringLiteral("KIT60");
const QByteArray BareNote("999001"), BareSet("99999999");

void transferByRule(benchmark::State& state) {
    const QStringList units = unitsInStock(UnitsTransferred);
    SalesBook notes(session(), documentKind(QStringLiteral("BTR")));
    Record header = documents::blank(notes, Client);
    header[strbtre.fac_depd] = MainDepot;
    for (auto _ : state) {
        const Record note = transfer_notes::write(notes, header, units);
        state.PauseTiming();
        documents::abandon(notes, note);
        state.ResumeTiming();
    }
}

/// What the engine does for a transfer note, whatever it carries: the files molven, vente and further ones.
class BareNoteWriter {
public:
    explicit BareNoteWriter(BareEngine& engine)
        : client_(engine.prepare(QStringLiteral("select * from strclient where clt_cod = ?"))),
          number_(engine.prepare(QStringLiteral("select max(fac_no) from f1.strbtre"))),
          depot_(engine.prepare(QStringLiteral("select * from strparam where cod_par = 'D' and num_par = ?"))),
          unit_(engine.prepare(QStringLiteral("select * from strproduit where pro_ann = '20' and imm_art = ?"))),
          article_(engine.prepare(QStringLiteral("select * from strarticle where art_ref = ?"))),
          header_(engine.prepare(insertion(strbtre, QStringLiteral("f1")))),
          line_(engine.prepare(insertion(strbtrl, QStringLiteral("f1")))),
          move_(engine.prepare(QStringLiteral(
              "update strproduit set tes_vte=?1,num_dep=?2,fam_dep='EST',nbl_dep=?3,clt_dep=?4,nom_dep='X',num_vte=?3,"
              "dat_vte='15/01/2040',tri_vte='20400115',clt_vte=?4,ref_vte='' where pro_ann='20' and imm_art=?5"))) {}

    void begin() {
        BareEngine::run(client_, {Client.toUtf8()});
        BareEngine::run(number_, {});
        for (const char* depot : {"001", "101"}) BareEngine::run(depot_, {depot});
        BareEngine::run(header_, recordValues(strbtre, {{&strbtre.fac_no, BareNote},
                                                        {&strbtre.fac_aa, "2040"},
                                                        {&strbtre.fac_clt, Client.toUtf8()},
                                                        {&strbtre.fac_lg, "ENT"}}));
        writeLine(0, {});
    }
    void add(int number, const QByteArray& immatriculation, const QByteArray& unitState, const QByteArray& depot) {
        BareEngine::run(unit_, {immatriculation});
        BareEngine::run(article_, {Article.toUtf8()});
        writeLine(number, immatriculation);
        BareEngine::run(move_, {unitState, depot, BareNote, Client.toUtf8(), immatriculation});
    }

private:
    void writeLine(int number, const QByteArray& immatriculation) {
        BareEngine::run(line_,
                        recordValues(strbtrl, {{&strbtrl.fac_no, BareNote},
                                               {&strbtrl.fac_aa, "2040"},
                                               {&strbtrl.fac_lg, QByteArray::number(number).rightJustified(3, '0')},
                                               {&strbtrl.fac_imm, immatriculation},
                                               {&strbtrl.fac_ref, Article.toUtf8()}}));
    }

    const BareEngine::Statement client_, number_, depot_, unit_, article_, header_, line_, move_;
};

/// Takes what a note written by the bare engine did out of the files again.
void forgetBareNote(const QStringList& units) {
    Workspace workspace;
    Database molven = workspace.open(session().molven());
    Database vente = workspace.open(session().vente());
    vente.remove(strbtre, strbtre.fac_no == QString::fromLatin1(BareNote));
    vente.remove(strbtrl, strbtrl.fac_no == QString::fromLatin1(BareNote));
    for (const QString& unit : units)
        molven.update(strproduit,
                      {{strproduit.tes_vte, state::InStock}, {strproduit.num_dep, MainDepot}, {strproduit.num_vte, {}}},
                      Immatriculation::fromText(unit).criterion());
}

void transferBare(benchmark::State& state) {
    const QStringList units = unitsInStock(UnitsTransferred);
    BareEngine engine({session().molven(), session().vente()});
    BareNoteWriter note(engine);
    for (auto _ : state) {
        engine.execute("begin immediate");
        note.begin();
        for (int i = 0; i < UnitsTransferred; ++i) note.add(i + 1, units[i].toUtf8(), "N", "101");
        engine.execute("commit");
        state.PauseTiming();
        forgetBareNote(units);
        state.ResumeTiming();
    }
}

/// A type of set with one component of sixty units, unless there is one.
void addKit(SalesBook& notes, Database ancillaire) {
    if (ancillaire.count(strancillaire, strancillaire.anc_code == Kit) > 0) return;
    const set_types::Files files{notes.molven, notes.workspace.open(session().path(DataFile::Compta)), ancillaire};
    Record type(strancillaire);
    type[strancillaire.anc_code] = Kit;
    type[strancillaire.anc_lib] = Kit;
    set_types::save(files, type, std::nullopt);
    set_types::saveComponent(files, Kit, Article, QString::number(UnitsOfSet), std::nullopt);
}

void fillAndSendByRule(benchmark::State& state) {
    const QStringList units = unitsInStock(UnitsOfSet);
    SalesBook notes(session(), documentKind(QStringLiteral("BTR")));
    set_journeys::Files files{notes, notes.workspace.open(session().path(DataFile::Ancillaire))};
    addKit(notes, files.ancillaire);
    for (auto _ : state) {
        const QString serial = ancillary_sets::create(files.ancillaire, Kit);
        ancillary_sets::fill(files.sets(), serial, units);
        set_journeys::send(files, serial, Client, {});
        state.PauseTiming();
        set_journeys::takeBack(files, {ancillary_sets::header(files.ancillaire, serial), units, {}, {}});
        ancillary_sets::remove(files.sets(), serial);
        state.ResumeTiming();
    }
}

void fillAndSendBare(benchmark::State& state) {
    const QStringList units = unitsInStock(UnitsOfSet);
    BareEngine engine({session().molven(), session().vente(), session().path(DataFile::Ancillaire)});
    BareNoteWriter note(engine);
    const auto unit = engine.prepare(QStringLiteral("select * from strproduit where pro_ann = '20' and imm_art = ?"));
    const auto line = engine.prepare(insertion(strstock, QStringLiteral("f2")));
    const auto place = engine.prepare(
        QStringLiteral("update strproduit set tes_vte='A',num_dep='A01',fam_dep='',stk_anc_imm=?1,stk_anc_cod='KIT60',"
                       "nbl_dep='',num_vte='' where pro_ann='20' and imm_art=?2"));
    const auto send =
        engine.prepare(QStringLiteral("update f2.strstock set stk_num_dep=?1,stk_num_vte=?2 where stk_anc_imm=?3"));
    const auto stock = engine.prepare(QStringLiteral("update strarticle set art_stk=art_stk+0 where art_ref=?"));
    const auto addLine = [&](int number, const QByteArray& immatriculation) {
        BareEngine::run(
            line, recordValues(strstock, {{&strstock.stk_anc_imm, BareSet},
                                          {&strstock.stk_anc_imm_lg, QByteArray::number(number).rightJustified(3, '0')},
                                          {&strstock.stk_imm_art, immatriculation}}));
    };
    for (auto _ : state) {
        engine.execute("begin immediate");
        addLine(0, {});
        engine.execute("commit");
        engine.execute("begin immediate");
        for (int i = 0; i < UnitsOfSet; ++i) {
            BareEngine::run(unit, {units[i].toUtf8()});
            addLine(i + 1, units[i].toUtf8());
            BareEngine::run(place, {BareSet, units[i].toUtf8()});
        }
        engine.execute("commit");
        engine.execute("begin immediate");
        note.begin();
        for (int i = 0; i < UnitsOfSet; ++i) note.add(i + 1, units[i].toUtf8(), "A", Client.toUtf8());
        BareEngine::run(send, {Client.toUtf8(), BareNote, BareSet});
        BareEngine::run(stock, {Article.toUtf8()});
        engine.execute("commit");
        state.PauseTiming();
        forgetBareNote(units);
        Workspace workspace;
        workspace.open(session().path(DataFile::Ancillaire))
            .remove(strstock, strstock.stk_anc_imm == QString::fromLatin1(BareSet));
        state.ResumeTiming();
    }
}

} // namespace

void registerTransfers() {
    add("transfer_note_of_200/molven", transferByRule, 3);
    add("transfer_note_of_200/bare", transferBare, 3);
    add("set_of_60_filled_and_sent/molven", fillAndSendByRule, 3);
    add("set_of_60_filled_and_sent/bare", fillAndSendBare, 3);
}

} // namespace molven::bench

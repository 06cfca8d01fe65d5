#include "support/sets.h"

#include "reference/article_tables.h"
#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/renumbering.h"
#include "sales/unit_history.h"
#include "sales/unit_rules.h"
#include "sales/unit_steps.h"
#include "stock/set_overview.h"
#include "stock/units.h"

namespace molven {

using test::faultsOf;
using test::Planted;
using test::refusalOf;

namespace {

const QString Kit = QStringLiteral("KIT");
const QString Accepted = QStringLiteral("(accepté)");

/// A type of two HIP and one CUP, with units of both in stock.
class SetsOnTheRoad : public testing::Test {
protected:
    SetsOnTheRoad()
        : hips(dossier.receive(QStringLiteral("HIP"), 4)),
          cups(dossier.receive(QStringLiteral("CUP"), 2)),
          sets(dossier.session) {
        sets.addType(Kit, {{QStringLiteral("HIP"), 2}, {QStringLiteral("CUP"), 1}});
    }
    QString whole() { return sets.filled(Kit, {hips[0], hips[1], cups[0]}); }
    Record send(const QString& serial, const char* client = "1") {
        return set_journeys::send(sets.files, serial, QString::fromLatin1(client), {});
    }
    QString refusedSending(const QString& serial, const char* client = "1") {
        return refusalOf([&] { send(serial, client); });
    }
    /// State, depot, document and set of a unit.
    QString stateOf(const QString& unit) {
        const Record u = dossier.unit(unit);
        return QStringList{u[strproduit.tes_vte],     u[strproduit.num_dep],     u[strproduit.nbl_dep],
                           u[strproduit.num_vte],     u[strproduit.clt_vte],     u[strproduit.nom_dep],
                           u[strproduit.stk_anc_imm], u[strproduit.stk_anc_cod], u[strproduit.reg_pat]}
            .join(u'/');
    }

    test::Dossier dossier;
    const QStringList hips, cups;
    test::Sets sets;
};

} // namespace

TEST_F(SetsOnTheRoad, KeepTheTotalOfTheirComposition) {
    const auto saved = [this](const char* article, const char* quantity, const std::optional<Record>& before = {}) {
        return refusalOf([&] {
            set_types::saveComponent(sets.typeFiles(), Kit, QString::fromLatin1(article), QString::fromLatin1(quantity),
                                     before);
        });
    };
    EXPECT_EQ(set_types::unitsOf(sets.ancillaire, Kit), 3);
    EXPECT_EQ(saved("NONE", "1"), QStringLiteral("Cet article n'existe pas"));
    EXPECT_EQ(saved("SCREW", "1"), QStringLiteral("référence non tenue en stock"));
    EXPECT_EQ(saved("HIP", "1"), QStringLiteral("Cet article est déjà dans la nomenclature"));
    for (const char* quantity : {"", "0", "1,5", "-1"})
        EXPECT_EQ(saved("GRAFT", quantity), QStringLiteral("Quantité incorrecte"));
    EXPECT_EQ(saved("GRAFT", "994"), QStringLiteral("Nomenclature pleine : 996 unités au plus"));
    EXPECT_EQ(saved("GRAFT", "2"), Accepted);
    const Record graft =
        sets.ancillaire.find(strnomenclature, strnomenclature.anc_article == QStringLiteral("GRAFT")).value();
    EXPECT_EQ(graft[strnomenclature.anc_lg], QStringLiteral("003"));
    EXPECT_EQ(saved("GRAFT", "4", graft), Accepted);
    EXPECT_EQ(set_types::unitsOf(sets.ancillaire, Kit), 7);
    EXPECT_EQ(saved("GRAFT", "5", graft), QStringLiteral("La nomenclature a été modifiée par un autre poste"));
    set_types::removeComponent(
        sets.ancillaire,
        sets.ancillaire.find(strnomenclature, strnomenclature.anc_article == QStringLiteral("GRAFT")).value());
    EXPECT_EQ(set_types::unitsOf(sets.ancillaire, Kit), 3);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST_F(SetsOnTheRoad, OfferTheUnitsThatExpireFirst) {
    const std::pair<int, const char*> expiries[] = {{0, "02/2031"}, {1, "11/2030"}, {2, ""}, {3, "01/2031"}};
    for (const auto& [unit, expiry] : expiries)
        sets.notes.molven.update(strproduit, {{strproduit.dat_per, QString::fromLatin1(expiry)}},
                                 Immatriculation::fromText(hips[unit]).criterion());
    QStringList offered;
    for (const Record& unit : ancillary_sets::offered(sets.notes.molven, QStringLiteral("HIP")))
        offered.append(unit[strproduit.imm_art]);
    EXPECT_EQ(offered, (QStringList{hips[1], hips[3], hips[0], hips[2]}));
    EXPECT_EQ(ancillary_sets::earliest(sets.notes.molven, {QStringLiteral("HIP"), {}, 3, 1}),
              (QStringList{hips[1], hips[3]}));
    dossier.document(QStringLiteral("LIV"), hips);
    EXPECT_EQ(refusalOf([&] { ancillary_sets::offered(sets.notes.molven, QStringLiteral("HIP")); }),
              QStringLiteral("Aucun produit en stock pour la référence HIP"));
}

TEST_F(SetsOnTheRoad, TakeWhatTheyLackAndGiveItBack) {
    const QString serial = ancillary_sets::create(sets.ancillaire, Kit);
    const QString graft = dossier.receive(QStringLiteral("GRAFT"), 1).first();
    const auto filled = [&](const QStringList& units) {
        return refusalOf([&] { ancillary_sets::fill(sets.files.sets(), serial, units); });
    };
    EXPECT_EQ(filled({graft}),
              QStringLiteral("Immatriculation %1 : la référence GRAFT n'est pas dans la nomenclature").arg(graft));
    EXPECT_EQ(filled(hips.mid(0, 3)),
              QStringLiteral("Immatriculation %1 : l'ancillaire a toutes ses unités de la référence HIP").arg(hips[2]));
    EXPECT_EQ(stateOf(hips[0]), QStringLiteral("N/001///////")) << "one refused, none placed";
    EXPECT_EQ(filled({hips[0], hips[1], cups[0]}), Accepted);
    EXPECT_EQ(stateOf(hips[0]), QStringLiteral("A/A01/////00000001/KIT/"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(4));
    EXPECT_EQ(set_overview::rows(sets.notes.molven, sets.ancillaire).first()[stretatanc.eta_com],
              QStringLiteral("Complet"));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());

    ancillary_sets::takeOut(sets.files.sets(), serial, hips[0]);
    EXPECT_EQ(stateOf(hips[0]), QStringLiteral("N/001///////"));
    EXPECT_EQ(refusalOf([&] { ancillary_sets::takeOut(sets.files.sets(), serial, hips[0]); }),
              QStringLiteral("L'immatriculation %1 n'est plus dans cet ancillaire").arg(hips[0]));
    EXPECT_EQ(refusedSending(serial), QStringLiteral("Impossible, cet ancillaire n'est pas complet"));
    EXPECT_EQ(set_overview::rows(sets.notes.molven, sets.ancillaire).first()[stretatanc.eta_com],
              QStringLiteral("Manque : 1 HIP"));
    ancillary_sets::remove(sets.files.sets(), serial);
    EXPECT_EQ(stateOf(cups[0]), QStringLiteral("N/001///////"));
    EXPECT_EQ(sets.ancillaire.count(strstock), 0);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST_F(SetsOnTheRoad, AreSentWholeByATransferNote) {
    dossier.document(QStringLiteral("BTR"), {hips[3]});
    const QString serial = whole();
    EXPECT_EQ(refusedSending(serial, ""), QStringLiteral("Veuillez choisir le client "));
    EXPECT_EQ(refusedSending(serial, "99"), QStringLiteral("Ce code n'existe pas"));
    EXPECT_EQ(refusalOf([&] { set_journeys::send(sets.files, serial, QStringLiteral("1"), QStringLiteral("99")); }),
              QStringLiteral("Ce code n'existe pas"));
    EXPECT_EQ(sets.notes.vente.count(strbtre), 1) << "nothing written";
    const Record note = send(serial);
    EXPECT_EQ((QStringList{note[strbtre.fac_no], note[strbtre.fac_depd], note[strbtre.fac_depa], note[strbtre.fac_btr],
                           note[strbtre.fac_eta]}
                   .join(u'|')),
              QStringLiteral("000002|A01|000001|Ancillaire|N000000"));
    EXPECT_EQ(stateOf(hips[0]), QStringLiteral("A/000001/000002/000002/000001/CLINIQUE DE L'ÉTOILE/00000001/KIT/"));
    EXPECT_EQ(units::situation(dossier.unit(hips[0]), dossier.session.rules()).place,
              QStringLiteral("Ancillaire : KIT en dépôt chez le client 000001"));
    const Record line = documents::lines(sets.notes, note).at(2);
    EXPECT_EQ(line[strbtrl.fac_id1] + u'|' + line[strbtrl.fac_typ] + u'|' + line[strbtrl.fac_tip],
              QStringLiteral("N° Lot : LOT-1  N° pièce : 2|F|3100001"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(2));
    const Record header = sets.header(serial);
    EXPECT_EQ((QStringList{header[strstock.stk_num_dep], header[strstock.stk_nom_dep], header[strstock.stk_num_vte],
                           header[strstock.stk_clt_vte], header[strstock.stk_tri_vte]}
                   .join(u'|')),
              QStringLiteral("000001|CLINIQUE DE L'ÉTOILE|000002|000001|") + QString(note[strbtre.tri_datf]));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());

    const QString away = QStringLiteral("Impossible, cet ancillaire n'est plus au dépôt principal");
    EXPECT_EQ(refusedSending(serial), away);
    EXPECT_EQ(refusalOf([&] { ancillary_sets::fill(sets.files.sets(), serial, {hips[2]}); }), away);
    EXPECT_EQ(refusalOf([&] { ancillary_sets::remove(sets.files.sets(), serial); }), away);
    EXPECT_EQ(refusalOf([&] { ancillary_sets::takeOut(sets.files.sets(), serial, hips[0]); }),
              QStringLiteral("Impossible, ce produit n'est pas stocké au dépôt initial"));
}

TEST_F(SetsOnTheRoad, HoldTheirUnitsBackFromEveryDocument) {
    const QString serial = whole();
    send(serial);
    for (const char* mode : {"LIV", "CSG", "FAC", "AVO", "BTR"}) {
        SalesBook book(dossier.session, documentKind(QString::fromLatin1(mode)));
        Record header = documents::blank(book, QStringLiteral("1"));
        if (book.kind().isTransfer()) header[strbtre.fac_depd] = QStringLiteral("000001");
        EXPECT_NE(refusalOf([&] { unit_rules::check(book, header, hips[0]); }), Accepted) << mode;
    }
    const Record note = documents::last(sets.notes).value();
    EXPECT_EQ(refusalOf([&] { document_lines::remove(sets.notes, note, documents::lines(sets.notes, note).record()); }),
              QStringLiteral("Bon d'un ancillaire : ses lignes suivent l'ancillaire et ne peuvent être supprimées"));
    Record manual = documents::blank(sets.notes, QStringLiteral("1"));
    manual[strbtre.fac_depd] = MainDepot;
    manual[strbtre.fac_depa] = SetDepot;
    EXPECT_EQ(refusalOf([&] { documents::create(sets.notes, manual); }),
              QStringLiteral("Dépôt des ancillaires : envoi et retour se font sur la fiche des ancillaires"));
    renumbering::renumber(dossier.session, *renumbering::ofMenu(QStringLiteral("mnu_util_num_btr")),
                          QStringLiteral("1"), QStringLiteral("900001"));
    EXPECT_EQ(sets.header(serial)[strstock.stk_num_vte], QStringLiteral("900001"));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST_F(SetsOnTheRoad, ComeBackShortOfTheUnitsUsed) {
    const QString serial = whole();
    EXPECT_EQ(refusalOf([&] { sets.takeBack(serial, {}); }),
              QStringLiteral("Impossible, cet ancillaire est au dépôt principal"));
    send(serial);
    const Record read = sets.header(serial);
    const auto refused = [&](const QStringList& back, const QString& patient, const QString& surgeon = {}) {
        return refusalOf([&] { set_journeys::takeBack(sets.files, {read, back, patient, surgeon}); });
    };
    EXPECT_EQ(refused({hips[0]}, QStringLiteral(" ")), QStringLiteral("Patient obligatoire"));
    EXPECT_EQ(refused({hips[0]}, QStringLiteral("MARTIN"), QStringLiteral("999")),
              QStringLiteral("Ce code n'existe pas"));
    EXPECT_EQ(refused({hips[2]}, QStringLiteral("MARTIN")),
              QStringLiteral("L'immatriculation %1 n'est plus dans cet ancillaire").arg(hips[2]));
    EXPECT_EQ(set_journeys::unitScanned(sets.files, serial, hips[1]), hips[1]);
    EXPECT_EQ(refusalOf([&] { set_journeys::unitScanned(sets.files, serial, hips[2]); }),
              QStringLiteral("Ce produit n'est pas dans l'ancillaire : ") + hips[2]);
    EXPECT_EQ(sets.header(serial), read) << "nothing written";

    units::putPresentStock(sets.notes.molven, QStringLiteral("CUP"));
    EXPECT_EQ(dossier.stock(QStringLiteral("CUP")), Decimal(1)) << "out with the set";
    sets.notes.molven.update(strarticle, {{strarticle.art_stk, QStringLiteral("2")}},
                             strarticle.art_ref == QStringLiteral("CUP")); // as a recount leaves it
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    const set_journeys::Returned done = sets.takeBack(serial, {hips[0], cups[0]});
    EXPECT_EQ(done.transferNote + u'|' + done.deliveryNote, QStringLiteral("000002|000001"));
    EXPECT_EQ(stateOf(hips[0]), QStringLiteral("A/A01/////00000001/KIT/"));
    EXPECT_EQ(stateOf(hips[1]), QStringLiteral("L/101/000001/000001/000001/CLINIQUE D///D'ALMEIDA Hélène"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(4)) << "a delivered unit is not invoiced yet";
    EXPECT_EQ(dossier.stock(QStringLiteral("CUP")), Decimal(2));
    EXPECT_EQ(refused({hips[0]}, QStringLiteral("MARTIN")),
              QStringLiteral("Impossible, cet ancillaire est au dépôt principal"));
    const Record state = set_overview::rows(sets.notes.molven, sets.ancillaire).first();
    EXPECT_EQ(state[stretatanc.stk_num_dep] + u'|' + state[stretatanc.eta_com], QStringLiteral("A01|Manque : 1 HIP"));
    const auto note = documents::find(sets.notes, QStringLiteral("1"));
    EXPECT_EQ(note->value(strbtre.fac_eta), QStringLiteral("T000002"));
    QStringList road;
    for (const Record& step : unit_history::find(dossier.session, hips[1]).steps)
        road.append(step[strsuivi.sui_lib] + u' ' + step[strsuivi.sui_no]);
    EXPECT_EQ(road.mid(1), (QStringList{QStringLiteral("Bon de transfert, Ancillaire 000001"),
                                        QStringLiteral("Bon de Livraison 000001"), QStringLiteral("Pose ")}));
    road.clear();
    for (const Record& step : unit_history::find(dossier.session, hips[0]).steps) road.append(step[strsuivi.sui_lib]);
    EXPECT_TRUE(road.contains(QStringLiteral("Bon de transfert, Retour Ancillaire N° 00000001")));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());

    ancillary_sets::fill(sets.files.sets(), serial, {hips[2]});
    send(serial, "2");
    const set_journeys::Returned again = sets.takeBack(serial, {});
    EXPECT_EQ(again.transferNote + u'|' + again.deliveryNote, QStringLiteral("|000002")) << "all used";
    EXPECT_EQ(ancillary_sets::lines(sets.ancillaire, serial).count(), 0);
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST_F(SetsOnTheRoad, AreListedWithWhatIsUrgentFirst) {
    sets.addType(QStringLiteral("ONE"), {{QStringLiteral("HIP"), 1}});
    const auto expiring = [&](int unit, const QString& expiry) {
        sets.notes.molven.update(strproduit, {{strproduit.dat_per, expiry}},
                                 Immatriculation::fromText(hips[unit]).criterion());
    };
    expiring(1, QStringLiteral("01/2020"));
    expiring(2, QStringLiteral("06/2030"));
    const QString good = sets.filled(QStringLiteral("ONE"), {hips[0]});
    const QString expired = sets.filled(QStringLiteral("ONE"), {hips[1]});
    const QString sooner = sets.filled(QStringLiteral("ONE"), {hips[2]});
    const QString empty = ancillary_sets::create(sets.ancillaire, Kit);
    QStringList order;
    for (const Record& set : set_overview::urgentFirst(set_overview::rows(sets.notes.molven, sets.ancillaire)))
        order.append(set[stretatanc.stk_anc_imm]);
    EXPECT_EQ(order, (QStringList{expired, empty, sooner, good}));
}

/// In the data of a set that is out at a client.
class PlantedInSets : public SetsOnTheRoad, public testing::WithParamInterface<Planted> {};

TEST_P(PlantedInSets, IsFound) {
    send(whole());
    test::plant(dossier.session, GetParam().file, GetParam().sql);
    const QStringList told = faultsOf(dossier.session);
    EXPECT_TRUE(told.contains(QString::fromUtf8(GetParam().told))) << told.join(u'\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Each, PlantedInSets,
    testing::Values(
        Planted{"depot", DataFile::Molven, "update strproduit set num_dep='000002' where imm_art='26030001'",
                "26030001 : dépôt 000002, son ancillaire 00000001 est en 000001"},
        Planted{"client", DataFile::Molven, "update strproduit set clt_vte='000002' where imm_art='26030001'",
                "26030001 : client 000002, son ancillaire 00000001 est chez 000001"},
        Planted{"type", DataFile::Molven, "update strproduit set stk_anc_cod='AUTRE' where imm_art='26030001'",
                "26030001 : ancillaire 00000001 de code KIT, AUTRE sur l'unité"},
        Planted{"state", DataFile::Molven, "update strproduit set tes_vte='N' where imm_art='26030001'",
                "26030001 : dans l'ancillaire 00000001, mais pas dans cet état"},
        Planted{"twice", DataFile::Ancillaire,
                "insert into strstock select * from strstock where stk_imm_art='26030001'",
                "26030001 : sur deux lignes d'ancillaire"},
        Planted{"lost", DataFile::Ancillaire, "delete from strstock where stk_imm_art='26030001'",
                "26030001 : dans un ancillaire qui ne la contient pas"},
        Planted{
            "apart", DataFile::Ancillaire, "update strstock set stk_num_vte='000009' where stk_anc_imm_lg='000'",
            "26030001 : ancillaire 00000001 : Bon de transfert « 000001 » sur sa ligne, « 000009 » sur la ligne 000"},
        Planted{"headless", DataFile::Ancillaire, "delete from strstock where stk_anc_imm_lg='000'",
                "26030001 : sur une ligne de l'ancillaire 00000001, qui n'a pas de ligne 000"},
        Planted{"total", DataFile::Ancillaire, "update strnomenclature set anc_qte=4 where anc_lg='000'",
                "KIT : nomenclature de 3 unités, 4 sur la ligne 000"},
        Planted{"stock", DataFile::Molven, "update strarticle set art_stk=1 where art_ref='HIP'",
                "HIP : art_stk = 1 pour 4 unités"}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace molven

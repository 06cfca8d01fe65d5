// Counts of depots: what a reading is taken for, what is told live, what settles it.

#include "reference/article_tables.h"
#include "sales/renumbering.h"
#include "sales/unit_removal.h"
#include "support/counts.h"

namespace molven {

using test::countOf;
using test::faultsOf;
using test::figuresOf;
using test::refusalOf;

namespace {

const QString Code = QStringLiteral("(01)04006381333931");

/// Four units in the hospital's depot, four at home, two in another hospital's.
class CountsOfDepots : public test::Sales {
protected:
    CountsOfDepots() : molven(workspace.open(dossier.session.molven())) {
        molven.update(strarticle, {{strarticle.art_ean, QStringLiteral("4006381333931")}},
                      strarticle.art_ref == QStringLiteral("HIP"));
        units = dossier.receive(QStringLiteral("HIP"), 10);
        transfer(units.mid(0, 4), "1", "001", "101");
        transfer(units.mid(8, 2), "2", "001", "102");
    }
    Record transfer(const QStringList& moved, const char* client, const char* from, const char* to) {
        return test::transfer(dossier.session, moved, client, from, to);
    }
    void mark(const QString& unit, const Text& field, const char* value) {
        molven.update(strproduit, {{field, QString::fromLatin1(value)}}, strproduit.imm_art == unit);
    }
    QString verdictOf(DepotCount& count, const QString& scanned) {
        const DepotCount::Reading reading = count.read(scanned);
        return reading.row[strconstat.lig_imm] + u' ' + reading.row[strconstat.lig_con] +
               (reading.isAgain ? QStringLiteral(" again") : QString());
    }
    DepotCount closed(DepotCount& count) { return DepotCount(molven, depot_counts::close(molven, count)); }

    Workspace workspace;
    Database molven;
    QStringList units;
};

} // namespace

TEST_F(CountsOfDepots, ExpectWhatIsInStockInTheDepotAndTellTheRest) {
    dossier.document(QStringLiteral("LIV"), {units[4]}); // lies under the hospital's depot now, as the next one
    dossier.document(QStringLiteral("CSG"), {units[5]});
    mark(units[6], strproduit.tes_vte, "A");
    mark(units[6], strproduit.num_dep, "000001"); // in a set at that hospital
    mark(units[1], strproduit.dat_per, "01/2020");
    DepotCount count = countOf(molven);
    EXPECT_EQ(figuresOf(count), QStringLiteral("4 0 4 0 0 0"));
    EXPECT_EQ(verdictOf(count, units[0]), units[0] + QStringLiteral(" P"));
    EXPECT_EQ(verdictOf(count, units[1]), units[1] + QStringLiteral(" P"));
    EXPECT_EQ(verdictOf(count, units[1]), units[1] + QStringLiteral(" P again"));
    for (int i = 4; i < 8; ++i) EXPECT_EQ(verdictOf(count, units[i]), units[i] + QStringLiteral(" I"));
    EXPECT_EQ(figuresOf(count), QStringLiteral("4 2 2 4 0 1"));
    EXPECT_EQ(count.tally().expired, 1);
    EXPECT_EQ(refusalOf([&] { count.read(QStringLiteral("99999999")); }), QStringLiteral("Immatriculation inconnue"));
    QStringList places;
    for (const Record& row : count.rows(verdict::Unexpected)) places.append(row[strconstat.lig_sit]);
    EXPECT_EQ(
        places,
        QStringList({QStringLiteral("livrée, document 000001"), QStringLiteral("vendue ou consignée, document 000001"),
                     QStringLiteral("dans un ancillaire chez le client 000001"), QStringLiteral("au dépôt 001")}));
    count.takeBack(units[7]);
    EXPECT_EQ(figuresOf(countOf(molven)), QStringLiteral("4 2 2 3 0 1"));
}

TEST_F(CountsOfDepots, TakeASupplierCodeForTheUnitsExpectedHereFirst) {
    mark(units[9], strproduit.fou_imm, "S9");
    DepotCount count = countOf(molven);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(verdictOf(count, Code + QStringLiteral("(10)LOT-1")), units[i] + QStringLiteral(" P"));
    EXPECT_EQ(verdictOf(count, Code + QStringLiteral("(10)LOT-1")), units[4] + QStringLiteral(" I"));
    EXPECT_EQ(verdictOf(count, Code + QStringLiteral("(10)LOT-1(21)S9")), units[9] + QStringLiteral(" I"));
    EXPECT_EQ(verdictOf(count, QStringLiteral("S9")), units[9] + QStringLiteral(" I again"));
    const DepotCount::Reading lower = count.read(Code + QStringLiteral("(10)lot-1"));
    EXPECT_EQ(lower.row[strconstat.lig_imm], units[5]);
    EXPECT_EQ(lower.alike, 4);
    EXPECT_EQ(lower.alikeRead, 7) << "the four expected and three others";
    EXPECT_EQ(refusalOf([&] { count.read(Code); }),
              QStringLiteral("Ce code ne porte ni lot ni série : lisez l'étiquette du produit"));
    EXPECT_EQ(refusalOf([&] { count.read(Code + QStringLiteral("(10)LOT-9")); }),
              QStringLiteral("Aucun produit ne porte ce code : HIP, lot LOT-9"));
    EXPECT_EQ(refusalOf([&] { countOf(molven, "A01"); }),
              QStringLiteral("Le dépôt des ancillaires se compte ancillaire par ancillaire"));
    EXPECT_EQ(refusalOf([&] { countOf(molven, "999"); }), QStringLiteral("Ce dépôt n'existe pas"));
}

TEST_F(CountsOfDepots, AreKeptByTwoWorkstationsAtOnceAndEndOnce) {
    Workspace other;
    DepotCount ours = countOf(molven), theirs = countOf(other.open(dossier.session.molven()));
    ours.read(units[0]);
    theirs.read(units[1]); // joins the count that the other began
    EXPECT_EQ(theirs.header()[strinvdep.inv_no], ours.header()[strinvdep.inv_no]);
    EXPECT_EQ(figuresOf(theirs), QStringLiteral("4 2 2 0 0 0"));
    const QString changed =
        QStringLiteral("L'inventaire a changé sur un autre poste : vérifiez les nombres, puis clôturez");
    EXPECT_EQ(refusalOf([&] { closed(ours); }), changed);
    EXPECT_EQ(figuresOf(countOf(molven)), QStringLiteral("4 2 2 0 0 0"));
    ours.refresh();
    // One expected unit leaves and another comes: the same figures are about other units.
    mark(units[3], strproduit.num_dep, "001");
    mark(units[5], strproduit.num_dep, "101");
    EXPECT_EQ(figuresOf(countOf(molven)), QStringLiteral("4 2 2 0 0 0"));
    EXPECT_EQ(refusalOf([&] { closed(ours); }), changed);
    mark(units[3], strproduit.num_dep, "101");
    mark(units[5], strproduit.num_dep, "001");
    const DepotCount done = closed(ours);
    EXPECT_EQ(figuresOf(done), QStringLiteral("4 2 2 0 0 0"));
    const QString over = QStringLiteral("Cet inventaire a été clôturé par un autre poste");
    EXPECT_EQ(refusalOf([&] { theirs.read(units[2]); }), over);
    EXPECT_EQ(refusalOf([&] { closed(theirs); }), over);
    EXPECT_EQ(refusalOf([&] { depot_counts::drop(molven, ours.header()); }), over);
    DepotCount next = countOf(molven);
    next.read(units[0]);
    EXPECT_EQ(next.header()[strinvdep.inv_no], QStringLiteral("000002"));
    depot_counts::drop(molven, next.header());
    EXPECT_EQ(molven.count(strinvlig), 4); // of the closed one: two found, two missing
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

TEST_F(CountsOfDepots, FollowWhateverAnotherWorkstationDoesBetweenTwoReadings) {
    Workspace workspaceOfOther;
    Database other = workspaceOfOther.open(dossier.session.molven());
    DepotCount ours = countOf(molven);
    ours.read(units[0]);
    DepotCount theirs = countOf(other);
    const auto moveTo = [&](const QString& unit, const char* depot) {
        other.update(strproduit, {{strproduit.num_dep, QString::fromLatin1(depot)}}, strproduit.imm_art == unit);
    };
    const std::function<void()> deeds[]{[&] { theirs.read(units[1]); },
                                        [&] { theirs.read(units[8]); }, // of another depot
                                        [&] { theirs.read(units[1]); }, // again
                                        [&] { theirs.takeBack(units[1]); },
                                        [&] { moveTo(units[8], "101"); },
                                        [&] { moveTo(units[2], "001"); },
                                        [&] { moveTo(units[9], "101"); },
                                        [&] { theirs.describe({}, QStringLiteral("AUTRE"), 120); },
                                        [&] { theirs.takeBack(units[0]); }};
    for (const auto& deed : deeds) {
        deed();
        ours.read(units[3]);
        const DepotCount fresh = countOf(molven);
        EXPECT_EQ(figuresOf(ours), figuresOf(fresh));
        EXPECT_EQ(ours.verdicts(), fresh.verdicts());
        EXPECT_EQ(ours.tally(), fresh.tally());
        EXPECT_EQ(ours.header()[strinvdep.inv_moi], fresh.header()[strinvdep.inv_moi]);
    }
}

TEST_F(CountsOfDepots, TellAUnitThatADocumentMovedSinceItWasRead) {
    DepotCount count = countOf(molven);
    count.read(units[0]);
    count.read(units[4]);
    transfer({units[0]}, "1", "101", "001"); // a document takes the first away, and brings the other
    transfer({units[4]}, "1", "001", "101");
    count.read(units[1]);
    EXPECT_EQ(figuresOf(count), QStringLiteral("4 2 2 0 1 0"));
    DepotCount done = closed(count);
    const Record moved = done.rows(verdict::Moved).first();
    EXPECT_EQ(moved[strconstat.lig_imm], units[0]);
    EXPECT_NE(refusalOf([&] { count_documents::kindOf(done, moved); }), QStringLiteral("(accepté)"));
    transfer({units[2]}, "1", "101", "001"); // missing, and found at home after the closing
    QString text;
    for (const count_documents::Offer& offer : count_documents::offers(molven, done, done.rows(verdict::Missing)))
        text = refusalOf([&] { count_documents::write(dossier.session, done.header(), offer, QStringLiteral("X")); });
    EXPECT_EQ(text, units[2] + QStringLiteral(" : déplacée depuis l'inventaire, au dépôt 001"));
    EXPECT_EQ(book("LIV").vente.count(strlive), 0);
}

TEST_F(CountsOfDepots, AreSettledByDocumentsOnceEach) {
    mark(units[0], strproduit.dat_per, "01/2020");
    DepotCount count = countOf(molven);
    for (const int i : {0, 1, 4, 8}) count.read(units[i]);
    DepotCount done = closed(count);
    const QList<Record> rows = test::settleable(done);
    const QList<count_documents::Offer> offers = count_documents::offers(molven, done, rows);
    ASSERT_EQ(offers.size(), 4); // two missing, one from home, one from the other hospital, one that expired
    const auto write = [&](const count_documents::Offer& offer, const char* patient) {
        return count_documents::write(dossier.session, done.header(), offer, QString::fromLatin1(patient));
    };
    EXPECT_EQ(refusalOf([&] { write(offers[0], " "); }),
              QStringLiteral("Patient obligatoire : \"INCONNU\" s'il n'est pas connu"));
    for (const count_documents::Offer& offer : offers) write(offer, "D'ALMEIDA");
    EXPECT_EQ(stateOf(units[2]), QStringLiteral("L/101/000001/000001"));
    EXPECT_EQ(dossier.unit(units[3])[strproduit.reg_pat], QStringLiteral("D'ALMEIDA"));
    for (const int i : {4, 8}) EXPECT_TRUE(stateOf(units[i]).startsWith(u"N/101/")) << i;
    EXPECT_TRUE(stateOf(units[0]).startsWith(u"N/001/"));
    EXPECT_EQ(refusalOf([&] { write(offers[0], "D'ALMEIDA"); }),
              units[2] + QStringLiteral(" : déjà sur le document 000001"));
    done.refresh();
    EXPECT_TRUE(test::settleable(done).isEmpty());
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    EXPECT_EQ(refusalOf([&] { unit_removal::remove(dossier.session, Immatriculation::fromText(units[1])); }),
              QStringLiteral("impossible de supprimer cette immatriculation"));

    // The note is renumbered, then its line deleted: the count follows.
    renumbering::renumber(dossier.session, *renumbering::ofMenu(QStringLiteral("mnu_util_num_liv")),
                          QStringLiteral("1"), QStringLiteral("700"));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    SalesBook notes = book("LIV");
    const Record note = *documents::find(notes, QStringLiteral("700"));
    documents::remove(notes, note, documents::linesRead(notes, note));
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    EXPECT_EQ(molven.count(strinvlig, strinvlig.lig_mod == QStringLiteral("LIV")), 0);
}

TEST_F(CountsOfDepots, FaultsAreFoundByTheCheck) {
    DepotCount count = countOf(molven);
    count.read(units[0]);
    closed(count);
    const Criterion one = strinvlig.lig_imm == units[0];
    molven.update(strinvlig,
                  {{strinvlig.lig_mod, QStringLiteral("LIV")}, {strinvlig.lig_doc, QStringLiteral("000009")}}, one);
    EXPECT_TRUE(
        faultsOf(dossier.session)
            .contains(QStringLiteral("000001/%1 : n'est pas sur le document 000009 qui l'a réglée").arg(units[0])));
    molven.update(strinvdep, {{strinvdep.inv_eta, count_state::Open}}, {});
    EXPECT_TRUE(faultsOf(dossier.session)
                    .contains(QStringLiteral("000001/%1 : constat dans un inventaire en cours").arg(units[0])));
    molven.remove(strinvdep);
    EXPECT_TRUE(
        faultsOf(dossier.session).contains(QStringLiteral("000001/%1 : unité d'un inventaire absent").arg(units[0])));
}

} // namespace molven

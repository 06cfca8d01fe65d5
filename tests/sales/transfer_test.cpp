#include "support/sales.h"
#include "support/sets.h"

#include "sales/renumbering.h"
#include "sales/transfer_notes.h"

namespace molven {

using test::faultsOf;
using test::newDocument;
using test::refusalOf;

namespace {

class Transfers : public test::Sales {
protected:
    /// A header for a client, between two depots.
    Record headerFor(const char* client, const char* from, const char* to) {
        Record header = documents::blank(notes, QString::fromLatin1(client));
        header[strbtre.fac_depd] = QString::fromLatin1(from);
        header[strbtre.fac_depa] = QString::fromLatin1(to);
        header[strbtre.fac_datf] = QStringLiteral("10/03/2026");
        header[strbtre.fac_pat] = QStringLiteral("D'ALMEIDA Hélène");
        return header;
    }
    Record transfer(const QStringList& units, const char* client, const char* from, const char* to) {
        return transfer_notes::write(notes, headerFor(client, from, to), units);
    }

    SalesBook notes = book("BTR");
};

} // namespace

TEST_F(Transfers, RefuseTheFirstFaultOfAHeader) {
    const auto refused = [this](const char* from, const char* to, const char* date = "10/03/2026") {
        Record header = headerFor("1", from, to);
        header[strbtre.fac_datf] = QString::fromLatin1(date);
        return refusalOf([&] { documents::create(notes, header); });
    };
    EXPECT_EQ(refusalOf([&] { documents::create(notes, Record(strbtre)); }), QStringLiteral("Client obligatoire"));
    EXPECT_EQ(refused("", "", ""), QStringLiteral("Dépôt de sortie obligatoire"));
    EXPECT_EQ(refused("001", "001", "31/02/2026"), QStringLiteral("Date invalide"));
    EXPECT_EQ(refused("001", "001"), QStringLiteral("dépôt initial = dépôt du client"));
    EXPECT_EQ(refused("999", "001"), QStringLiteral("Dépôt inconnu"));
    EXPECT_EQ(refused("001", ""), QStringLiteral("Dépôt inconnu"));
    EXPECT_EQ(refused("A01", "000001"),
              QStringLiteral("Dépôt des ancillaires : envoi et retour se font sur la fiche des ancillaires"))
        << "by hand, without a set";
    EXPECT_EQ(notes.vente.count(strbtre), 0);
    const Record note = documents::create(notes, headerFor("1", "001", "101"));
    EXPECT_EQ(note[strbtre.fac_eta] + u'|' + note[strbtre.fac_dat] + u'|' + note[strbtre.fac_aa],
              QStringLiteral("N000000|10/03/2026|2026"));
}

TEST_F(Transfers, MoveUnitsOnlyFromTheDepotTheyLieIn) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 4);
    dossier.document(QStringLiteral("LIV"), {units[1]});
    dossier.document(QStringLiteral("FAC"), {units[2]});
    const auto refused = [&](const QStringList& moved) {
        return refusalOf([&] { transfer(moved, "1", "001", "101"); });
    };
    EXPECT_EQ(refused({units[0], units[1]}),
              QStringLiteral("Non transferable -- Immat : %1 a été livré , BL N° : 000001").arg(units[1]));
    EXPECT_EQ(refused({units[2]}),
              QStringLiteral("Non transferable -- Immat : %1 a été vendue , FACT N° : 000001").arg(units[2]));
    EXPECT_EQ(notes.vente.count(strbtre), 0) << "one unit refused, nothing written";
    EXPECT_EQ(refused({units[0]}), QStringLiteral("(accepté)"));
    EXPECT_EQ(refused({units[0]}), QStringLiteral("Non transferable -- Immat : %1 est au dépot : 101").arg(units[0]));
    const Record moved = dossier.unit(units[0]);
    EXPECT_EQ(stateOf(units[0]), QStringLiteral("N/101/000001/000001"));
    EXPECT_EQ(moved[strproduit.nom_dep] + u'|' + moved[strproduit.ref_vte] + u'|' + moved[strproduit.clt_dep] + u'|' +
                  moved[strproduit.clt_vte] + u'|' + moved[strproduit.dat_vte] + u'|' + moved[strproduit.tri_vte] +
                  u'|' + moved[strproduit.fam_dep] + u'|' + moved[strproduit.reg_pat],
              QStringLiteral("CLINIQUE DE L'ÉTOILE|D'ALMEIDA Hélène|000001|000001|10/03/2026|20260310|EST|"));
    EXPECT_EQ(units::situation(moved, dossier.session.rules()).document,
              QStringLiteral("Bon de Transfert N° 000001 du 10/03/2026"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), Decimal(3));
}

TEST_F(Transfers, AreTypedByUnitsOfTheDepotAndTextsAlone) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("LIV"), {units[1]});
    dossier.document(QStringLiteral("FAC"), {units[2]});
    const Record fromHome = headerFor("1", "001", "101"), fromClient = headerFor("1", "101", "001");
    const auto typed = [&](const Record& header, const QString& unit) {
        return refusalOf([&] { unit_rules::check(notes, header, unit); });
    };
    EXPECT_EQ(typed(fromHome, QStringLiteral("77777777")), QStringLiteral("Immatriculation inconnue"));
    EXPECT_EQ(typed(fromHome, units[1]), QStringLiteral("Cette immatriculation a été livrée"));
    EXPECT_EQ(typed(fromHome, units[2]), QStringLiteral("Cette immatriculation a été vendue"));
    EXPECT_EQ(typed(fromClient, units[0]), QStringLiteral("Cette immatriculation est au dépôt"));
    EXPECT_EQ(typed(fromHome, units[0]), QStringLiteral("(accepté)"));
    for (const char* article : {"SCREW", "FEE"})
        EXPECT_EQ(refusalOf([&] { document_lines::preset(notes, fromHome, QString::fromLatin1(article)); }),
                  QStringLiteral("Cet article ni suivi, ni texte"));
    const Record note = documents::create(notes, fromHome);
    document_lines::add(notes, note, {test::lineOfArticle(notes, note, QStringLiteral("NOTE"))});
    document_lines::remove(notes, note, documents::lines(notes, note).record());
    EXPECT_EQ(documents::lines(notes, note).count(), 0);
}

class LinesTakenOff : public Transfers, public testing::WithParamInterface<const char*> {};

TEST_P(LinesTakenOff, PutTheUnitBackAsItsDocumentHadLeftIt) {
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    for (const QString& mode : QString::fromLatin1(GetParam()).split(u' ', Qt::SkipEmptyParts)) {
        if (mode == u"HOME")
            transfer({unit}, "1", "101", "001");
        else if (mode == u"OTHER")
            transfer({unit}, "2", "001", "102");
        else
            dossier.document(mode, {unit});
    }
    const Record before = dossier.unit(unit);
    const QString from = before[strproduit.num_dep];
    const Record note = transfer({unit}, "2", from.toLatin1().constData(), from == u"102" ? "101" : "102");
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    document_lines::remove(notes, note, documents::lines(notes, note).record());
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
    const Record after = dossier.unit(unit);
    for (const Field* field : strproduit.fields()) {
        // Never moved, a unit has no document; taken back from its first, it says so in six digits.
        const bool isFirst = field == &strproduit.num_vte && before.value(*field).isEmpty();
        EXPECT_EQ(after.value(*field), isFirst ? documents::NotInvoiced : before.value(*field))
            << field->name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(AfterEveryRoad, LinesTakenOff,
                         testing::Values("", "BTR", "BTR HOME", "CSG AVG", "FAC AVO", "BTR FAC AVO", "BTR HOME OTHER",
                                         "FAC AVO BTR", "BTR HOME BTR"));

TEST_F(Transfers, KeepTheLineOfAUnitThatHasMovedOn) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    const Record note = transfer(units, "1", "001", "101");
    dossier.document(QStringLiteral("FAC"), {units[0]});
    const Record home = transfer({units[1]}, "1", "101", "001");
    const auto removed = [&](qint64 line) {
        return refusalOf([&] { document_lines::remove(notes, note, documents::lines(notes, note).at(line)); });
    };
    const QString moved =
        QStringLiteral("L'immatriculation %1 a été déplacée depuis (document %2, dépôt %3) : sa ligne "
                       "ne peut être supprimée");
    EXPECT_EQ(removed(0), moved.arg(units[0], QStringLiteral("000001"), QStringLiteral("101")));
    EXPECT_EQ(removed(1), moved.arg(units[1], QStringLiteral("000002"), QStringLiteral("001")));
    EXPECT_EQ(removed(2), QStringLiteral("(accepté)"));
    EXPECT_EQ(documents::lines(notes, note).count(), 2);
    EXPECT_EQ(home[strbtre.fac_no], QStringLiteral("000002"));
    EXPECT_EQ(stateOf(units[2]), QStringLiteral("N/001//000000"));
}

TEST_F(Transfers, CorrectThePatientOnTheUnitsThatTheNoteHolds) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const Record note = transfer(units, "1", "001", "101");
    transfer({units[1]}, "1", "101", "001");
    Record corrected = note;
    corrected[strbtre.fac_pat] = QStringLiteral("MARTIN Léa");
    corrected[strbtre.fac_btr] = QStringLiteral("BON 7");
    documents::change(notes, corrected, note);
    const Record unit = dossier.unit(units[0]);
    EXPECT_EQ(unit[strproduit.ref_vte] + u'|' + unit[strproduit.reg_pat], QStringLiteral("MARTIN Léa|"));
    EXPECT_EQ(dossier.unit(units[1])[strproduit.ref_vte], QStringLiteral("D'ALMEIDA Hélène"));
    EXPECT_EQ(documents::current(notes, note)[strbtre.fac_btr], QStringLiteral("BON 7"));
}

TEST_F(Transfers, AreRenewedOnceWithTheUnitsThatAreLeft) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    const Record note = transfer(units, "1", "001", "101");
    dossier.document(QStringLiteral("FAC"), {units[0]});
    Record header = transfer_notes::renewal(notes, note, QStringLiteral("1"));
    EXPECT_EQ(header.value(strbtre.fac_depd) + header.value(strbtre.fac_depa), QStringLiteral("101001"));
    header = transfer_notes::renewal(notes, note, QStringLiteral("2"));
    EXPECT_EQ(header.value(strbtre.fac_depd) + header.value(strbtre.fac_depa) + header.value(strbtre.fac_pat),
              QStringLiteral("101102D'ALMEIDA Hélène"));
    QStringList left;
    for (const Record& line : transfer_notes::remaining(notes, note)) left.append(line[strbtrl.fac_imm]);
    EXPECT_EQ(left, units.mid(1));
    EXPECT_EQ(refusalOf([&] { transfer_notes::renew(notes, header, units, {}, note); }),
              QStringLiteral("Non transferable -- Immat : %1 a été vendue , FACT N° : 000001").arg(units[0]));
    Record earlier = header;
    earlier[strbtre.fac_datf] = QStringLiteral("09/03/2026");
    EXPECT_EQ(refusalOf([&] { transfer_notes::renew(notes, earlier, left, {}, note); }),
              QStringLiteral("Date antérieure à celle du bon renouvelé"));
    EXPECT_EQ(documents::current(notes, note), note) << "nothing written";
    const Record renewed = transfer_notes::renew(notes, header, left, {}, note);
    EXPECT_EQ(documents::current(notes, note)[strbtre.fac_eta], QStringLiteral("T000002"));
    EXPECT_EQ(stateOf(units[1]), QStringLiteral("N/102/000002/000002"));
    EXPECT_EQ(refusalOf([&] { transfer_notes::renew(notes, header, left, {}, note); }),
              QStringLiteral("Ce Bon a été transféré sur le Bon N° : 000002"));
    while (!documents::lines(notes, renewed).isEmpty())
        document_lines::remove(notes, renewed, documents::lines(notes, renewed).record());
    EXPECT_EQ(stateOf(units[1]), QStringLiteral("N/101/000001/000001"));
    documents::abandon(notes, renewed);
    EXPECT_EQ(transfer_notes::renewedOn(documents::current(notes, note)), QString()) << "it may be renewed again";
}

TEST_F(Transfers, AreRenumberedWithTheNoteThatTheyRenew) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 1);
    const Record note = transfer(units, "1", "001", "101");
    transfer_notes::renew(notes, transfer_notes::renewal(notes, note, QStringLiteral("2")), units, {}, note);
    transfer(units, "1", "102", "101");
    dossier.document(QStringLiteral("FAC"), units);
    dossier.document(QStringLiteral("AVO"), units);
    const Renumbering& ofTransfers = *renumbering::ofMenu(QStringLiteral("mnu_util_num_btr"));
    for (const char* number : {"1", "2"})
        renumbering::renumber(dossier.session, ofTransfers, QString::fromLatin1(number),
                              QStringLiteral("90000") + QString::fromLatin1(number));
    EXPECT_EQ(documents::find(notes, QStringLiteral("900001"))->value(strbtre.fac_eta), QStringLiteral("T900002"));
    EXPECT_EQ(notes.vente.find(strfacl, strfacl.fac_qte < QStringLiteral("0"))->value(strfacl.fac_ori),
              QStringLiteral("000001"))
        << "the invoice of the same number keeps its own";
    EXPECT_EQ(faultsOf(dossier.session), QStringList());
}

} // namespace molven

// What depots lack against their endowments, and the notes that fill them.

#include "sales/replenishment.h"

#include "dossier/reference_files.h"
#include "reference/code_tables.h"
#include "reference/parameters.h"
#include "stock/depot_tables.h"
#include "stock/endowments.h"
#include "support/counts.h"

namespace molven {

using test::refusalOf;

namespace {

class Replenishment : public test::Sales {
protected:
    Replenishment() : units(dossier.receive(QStringLiteral("HIP"), 6)) {
        expire(units[0], "01/2020");
        mark(units[1], strproduit.fab_con, "Z");
        expire(units[2], "02/2049");
        expire(units[3], "01/2049");
        expire(units[4], "");
        expire(units[5], "12/2048");
    }
    void mark(const QString& unit, const Text& field, const char* value) {
        notes.molven.update(strproduit, {{field, QString::fromLatin1(value)}}, strproduit.imm_art == unit);
    }
    void expire(const QString& unit, const char* month) { mark(unit, strproduit.dat_per, month); }
    QString endow(const char* depot, const char* article, int quantity) {
        Record endowment(strdotation);
        endowment[strdotation.dot_dep] = QString::fromLatin1(depot);
        endowment[strdotation.dot_ref] = QString::fromLatin1(article);
        endowment[strdotation.dot_qte] = quantity;
        return refusalOf([&] { code_tables::add(notes.molven, endowments::table(), endowment); });
    }
    /// "depot article lacking given bought", one a row.
    QStringList shortages(const QString& depot = {}) {
        QStringList lines;
        for (const Record& row : replenishment::shortages(notes.molven, depot))
            lines.append(QStringList{row[strreassort.rea_dep], row[strreassort.rea_ref],
                                     row[strreassort.rea_man].toString(), row[strreassort.rea_don].toString(),
                                     row[strreassort.rea_ach].toString()}
                             .join(u' '));
        return lines;
    }
    QStringList unitsIn(const char* depot) {
        QStringList found;
        for (const Record& unit :
             notes.molven.select(strproduit, strproduit.num_dep == QString::fromLatin1(depot), strproduit.imm_art))
            found.append(unit[strproduit.imm_art]);
        return found;
    }

    SalesBook notes = book("BTR");
    QStringList units;
};

} // namespace

TEST_F(Replenishment, RefusesEndowmentsThatMeanNothing) {
    EXPECT_EQ(endow("999", "HIP", 1), QStringLiteral("Ce dépôt n'existe pas"));
    EXPECT_EQ(endow("001", "HIP", 1), QStringLiteral("Le dépôt principal fournit les autres : pas de dotation"));
    EXPECT_EQ(endow("101", "SCREW", 1), QStringLiteral("Cet article n'est pas suivi à l'unité"));
    EXPECT_EQ(endow("101", "RIEN", 1), QStringLiteral("Cet article n'existe pas"));
    EXPECT_EQ(endow("101", "HIP", 0), QStringLiteral("Quantité incorrecte"));
    EXPECT_EQ(endow("101", "HIP", 2), QStringLiteral("(accepté)"));
    EXPECT_EQ(endow("101", "HIP", 3), QStringLiteral("Cette dotation existe déjà"));
    const auto brought = reference_files::bringIn(dossier.session, QStringLiteral("dotations"),
                                                  "dot_dep;dot_ref;dot_qte\r\n101;HIP;4\r\n102;CUP;1\r\n");
    EXPECT_EQ(brought.written, 2);
    EXPECT_EQ(notes.molven.sum(strdotation, strdotation.dot_qte), Decimal(5));
}

TEST_F(Replenishment, GivesWhatIsGoodEarliestExpiryFirst) {
    endow("101", "HIP", 2);
    endow("102", "HIP", 3);
    endow("102", "CUP", 1);
    EXPECT_EQ(shortages(), QStringList({QStringLiteral("101 HIP 2 2 0"), QStringLiteral("102 CUP 1 0 1"),
                                        QStringLiteral("102 HIP 3 2 1")}));
    const QList<Record> bought = replenishment::purchases(notes.molven, replenishment::shortages(notes.molven));
    ASSERT_EQ(bought.size(), 2);
    EXPECT_EQ(bought[0][strachat.ach_ref] + bought[0][strachat.ach_nom], QStringLiteral("CUPFABRICANT"));

    const QList<Record> seen = replenishment::shortages(notes.molven, QStringLiteral("101"));
    replenishment::write(notes, seen);
    EXPECT_EQ(unitsIn("101"), QStringList({units[3], units[5]}));
    EXPECT_EQ(refusalOf([&] { replenishment::write(notes, seen); }),
              QStringLiteral("HIP : il manque maintenant 0 unité au dépôt 101, et non plus 2 : actualisez"));
    dossier.document(QStringLiteral("FAC"), {units[3]});
    EXPECT_EQ(shortages(QStringLiteral("101")), QStringList(QStringLiteral("101 HIP 1 1 0"))); // sold: lacking again

    const QList<Record> others = replenishment::shortages(notes.molven, QStringLiteral("102"));
    dossier.document(QStringLiteral("LIV"), {units[2]});
    EXPECT_EQ(refusalOf([&] { replenishment::write(notes, others); }),
              QStringLiteral("HIP : le dépôt principal ne peut plus donner que 1 unité, et non 2 : actualisez"));
    EXPECT_EQ(unitsIn("102"), QStringList());
    replenishment::write(notes, replenishment::shortages(notes.molven, QStringLiteral("102")));
    EXPECT_EQ(unitsIn("102"), QStringList(units[4])); // without expiry, the last to be given
    EXPECT_EQ(
        refusalOf([&] { replenishment::write(notes, replenishment::shortages(notes.molven, QStringLiteral("102"))); }),
        QStringLiteral("Dépôt 102 : le dépôt principal ne peut rien donner"));
    EXPECT_EQ(test::faultsOf(dossier.session), QStringList());
}

} // namespace molven

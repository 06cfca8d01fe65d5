// Which unit a scanned text names, for a document.

#include "sales/scanned_units.h"

#include "reference/article_tables.h"
#include "support/dossier.h"

namespace molven {

namespace {

const QString Code = QStringLiteral("(01)04006381333931");

class ScannedUnits : public testing::Test {
protected:
    ScannedUnits() : book(dossier.session, documentKind(QStringLiteral("LIV"))) {
        book.molven.update(strarticle, {{strarticle.art_ean, QStringLiteral("4006381333931")}},
                           strarticle.art_ref == QStringLiteral("HIP"));
        units = dossier.receive(QStringLiteral("HIP"), 3); // all of LOT-1
        mark(units[0], strproduit.fou_imm, "S1");
        mark(units[1], strproduit.lot_art, "LOT-2");
        header = test::newDocument(book);
    }
    void mark(const QString& unit, const Text& field, const char* value) {
        book.molven.update(strproduit, {{field, QString::fromLatin1(value)}}, strproduit.imm_art == unit);
    }
    QString found(const QString& scanned) {
        return scanned_units::find(book, *header, scanned).value(strproduit.imm_art);
    }
    QString refused(const QString& scanned) {
        return test::refusalOf([&] { found(scanned); });
    }

    test::Dossier dossier;
    SalesBook book;
    QStringList units;
    std::optional<Record> header;
};

} // namespace

TEST_F(ScannedUnits, AreNamedByOurNumberTheSupplierSerialOrTheSupplierCode) {
    EXPECT_EQ(found(units[2]), units[2]);
    EXPECT_EQ(found(QStringLiteral("S1")), units[0]);
    EXPECT_EQ(found(Code + QStringLiteral("(21)S1")), units[0]);
    EXPECT_EQ(found(Code + QStringLiteral("(10)LOT-2")), units[1]);
    EXPECT_EQ(found(Code + QStringLiteral("(17)301231(10)LOT-2")), units[1]);
}

TEST_F(ScannedUnits, AreNeverGuessed) {
    EXPECT_EQ(refused(Code + QStringLiteral("(10)LOT-1")),
              QStringLiteral("Plusieurs produits ont ce code (%1, %2) : lisez l'étiquette du produit")
                  .arg(units[0], units[2]));
    EXPECT_EQ(refused(Code + QStringLiteral("(10)LOT-9")),
              QStringLiteral("Aucun produit en stock ne porte ce code : HIP, lot LOT-9"));
    EXPECT_EQ(refused(QStringLiteral("(01)04006381333955")), QStringLiteral("Référence inconnue : 04006381333955"));
    EXPECT_EQ(refused(QStringLiteral("S9")), QStringLiteral("Immatriculation inconnue"));
}

TEST_F(ScannedUnits, SayWhyTheyMayNotBeTaken) {
    dossier.document(QStringLiteral("LIV"), {units[1]});
    EXPECT_EQ(refused(Code + QStringLiteral("(10)LOT-2")), QStringLiteral("Cette immatriculation a été livrée"));
    EXPECT_EQ(refused(units[1]), QStringLiteral("Cette immatriculation a été livrée"));
}

} // namespace molven

// One search for everything.

#include "sales/find_anything.h"

#include "reference/article_tables.h"
#include "support/sales.h"

namespace molven {

namespace {

using Kind = Finding::Kind;
const QSet<Kind> Everything{Kind::Unit, Kind::Document, Kind::Client,  Kind::Patient, Kind::Article,
                            Kind::Lot,  Kind::Set,      Kind::SetType, Kind::Supplier};

class Search : public test::Sales {
protected:
    Search() : units(dossier.receive(QStringLiteral("HIP"), 3)) {
        dossier.document(QStringLiteral("LIV"), {units[0]});
        dossier.document(QStringLiteral("BTR"), {units[1]});
        Workspace workspace;
        Database molven = workspace.open(dossier.session.molven());
        const auto give = [&](int unit, const Field& field, const char* value) {
            molven.update(strproduit, {{field, QString::fromUtf8(value)}}, strproduit.imm_art == units[unit]);
        };
        give(0, strproduit.reg_pat, "HÉLÈNE D'ARC");
        give(1, strproduit.reg_pat, "helene d'Arcy");
        give(1, strproduit.fou_imm, "SN-77");
        give(2, strproduit.lot_art, "Z9");
        molven.update(strarticle, {{strarticle.art_ean, QStringLiteral("3760000000017")}},
                      strarticle.art_ref == QStringLiteral("HIP"));
    }
    /// "1:code" for each answer, its kind by the place in the list of kinds.
    QString answers(const QString& typed, const QSet<Kind>& wanted = Everything) {
        QStringList found;
        for (const Finding& one : FindAnything(dossier.session).answers(typed, wanted))
            found.append(QString::number(static_cast<int>(one.kind)) + u':' + one.code +
                         (one.document ? u'/' + one.document->mode : QString()));
        return found.join(u' ');
    }

    QStringList units;
};

} // namespace

TEST_F(Search, FindsEveryKindOfRecordByItsBeginning) {
    EXPECT_EQ(answers(units[0].left(4)), QStringLiteral("0:%1 0:%2 0:%3").arg(units[0], units[1], units[2]));
    EXPECT_EQ(answers(QStringLiteral(" sn-7 ")), QStringLiteral("0:") + units[1]);
    EXPECT_EQ(answers(QStringLiteral("Z")), QStringLiteral("5:Z9"));
    EXPECT_EQ(answers(QStringLiteral("lot-")), QStringLiteral("5:LOT-1")) << "a lot of many units is one answer";
    EXPECT_EQ(answers(QStringLiteral("Hélène d'a")), QStringLiteral("3:HÉLÈNE D'ARC 3:helene d'Arcy"));
    EXPECT_EQ(answers(QStringLiteral("l'etoile")), QStringLiteral("2:000001")) << "a word inside a client's name";
    EXPECT_EQ(answers(QStringLiteral("article cu")), QStringLiteral("4:CUP"));
    EXPECT_EQ(answers(QStringLiteral("0100037600000000171710Z9")).section(u' ', 0, 0), QString());
    EXPECT_EQ(answers(QStringLiteral("(01)03760000000017(10)Z9")), QStringLiteral("0:") + units[2]);
}

TEST_F(Search, PutsFirstWhatBearsJustTheTypedNumber) {
    EXPECT_EQ(answers(QStringLiteral("1")), QStringLiteral("1:000001/LIV 1:000001/BTR 2:000001 8:000001"));
    EXPECT_EQ(answers(QStringLiteral("HIP")).section(u' ', 0, 0), QStringLiteral("4:HIP"));
}

TEST_F(Search, AnswersNothingToNothingAndToWhoMayNotSee) {
    for (const char* typed : {"", "  ", "''", "\"; drop", "%", "(01)1", "~~~~", "\xF0\x9F\xA6\xB4"})
        EXPECT_EQ(answers(QString::fromUtf8(typed)), QString()) << typed;
    EXPECT_EQ(answers(QStringLiteral("etoile"), {Kind::Unit, Kind::Document}), QString());
    EXPECT_EQ(answers(QStringLiteral("1"), {Kind::Client}), QStringLiteral("2:000001"));
}

} // namespace molven

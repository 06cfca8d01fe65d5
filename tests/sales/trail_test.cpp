#include "reference/article_tables.h"
#include "support/dossier.h"

#include "sales/record_trail.h"

namespace molven {

using Kind = TrailSubject::Kind;

namespace {

/// "operation : record : change" of every row.
QStringList told(const test::Dossier& dossier, Kind kind, const QString& key) {
    QStringList lines;
    for (const Record& row : record_trail::find(dossier.session, {kind, key}))
        lines.append(QStringList{row[strhisto.his_act], row[strhisto.his_obj], row[strhisto.his_txt]}.join(
            QStringLiteral(" : ")));
    return lines;
}

} // namespace

TEST(RecordTrails, TellInWordsWhatBecameOfAUnitAnArticleAndADocument) {
    test::Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    {
        Workspace workspace;
        workspace.open(dossier.session.molven())
            .update(strarticle, {{strarticle.art_pv1, QStringLiteral("1350")}},
                    strarticle.art_ref == QStringLiteral("HIP"));
    }
    const QStringList unit = told(dossier, Kind::Unit, units[0]);
    const QString name = QStringLiteral(" : Unité 20/") + units[0];
    EXPECT_EQ(unit.first(), QStringLiteral("Réception") + name + QStringLiteral(" : Création"));
    EXPECT_TRUE(unit.contains(QStringLiteral("Ajout de lignes") + name + QStringLiteral(" : Etat : N -> L")))
        << unit.join(u'\n').toStdString();
    EXPECT_EQ(told(dossier, Kind::Unit, units[1]).size(), 1);
    const QStringList article = told(dossier, Kind::Article, QStringLiteral("hip"));
    EXPECT_EQ(article.last(), QStringLiteral(" : Article HIP : Prix de vente HT : 100,00 -> 1350,00"));
    EXPECT_TRUE(article.contains(QStringLiteral("Réception : Article HIP : Stock : 0 -> 2")));

    const QStringList note = told(dossier, Kind::Document, QStringLiteral("1"));
    EXPECT_TRUE(note.first().startsWith(QStringLiteral("Création du document : Bon de livraison ")));
    const QString header = note.first().section(QStringLiteral(" : "), 1, 1);
    const QString number = header.section(u' ', -1);
    EXPECT_EQ(told(dossier, Kind::Document, number), note);
    EXPECT_EQ(told(dossier, Kind::Document, QStringLiteral("strlive/") + number), note);
    EXPECT_EQ(told(dossier, Kind::Document, QStringLiteral("strface/") + number), QStringList());
    EXPECT_FALSE(told(dossier, Kind::Client, QStringLiteral("1")).isEmpty());
    EXPECT_FALSE(told(dossier, Kind::Supplier, QStringLiteral("1")).isEmpty());
}

TEST(RecordTrails, AreLimitedToTheDaysAsked) {
    test::Dossier dossier;
    const auto count = [&](const char* first, const char* last) {
        return record_trail::find(dossier.session, {}, QString::fromLatin1(first), QString::fromLatin1(last)).size();
    };
    EXPECT_GT(count("", ""), 10);
    EXPECT_EQ(count("01/01/2001", ""), count("", ""));
    EXPECT_EQ(count("", "01/01/2001"), 0);
    EXPECT_EQ(test::refusedField([&] { count("", "32/01/2001"); }), QStringLiteral("au"));
}

} // namespace molven

#include "support/dossier.h"

#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_tables.h"
#include "sales/recall.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

QString client(Database molven, const char* code) {
    return parties::findClient(molven, QString::fromLatin1(code))->value(strclient.clt_nom);
}

} // namespace

TEST(Recalls, FindEveryUnitOfALotWhereverItIs) {
    Dossier dossier;
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 4);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    dossier.document(QStringLiteral("FAC"), {units[1]}, QStringLiteral("2"));
    dossier.document(QStringLiteral("FAC"), {units[2]});
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Database vente = workspace.open(dossier.session.vente());
    Database historic = workspace.open(dossier.session.historic());
    { // the last invoice is archived with its unit
        Transaction transaction(workspace);
        const Criterion archived = strproduit.imm_art == units[2];
        historic.insert(dossier.unit(units[2]));
        const QString number = dossier.unit(units[2])[strproduit.num_vte];
        for (const Record& header : vente.select(strface, strface.fac_no == number)) historic.insert(header);
        for (const Record& line : vente.select(strfacl, strfacl.fac_no == number)) historic.insert(line);
        vente.remove(strface, strface.fac_no == number);
        vente.remove(strfacl, strfacl.fac_no == number);
        molven.remove(strproduit, archived);
        transaction.commit();
    }

    const auto found = [&dossier](const RecallQuery& query) {
        QStringList lines;
        for (const Record& unit : recall::find(dossier.session, query))
            lines.append(unit[strrappel.rap_imm].right(1) + u' ' + unit[strrappel.rap_etat] + u' ' +
                         unit[strrappel.rap_clt] + u' ' + unit[strrappel.rap_pat] + u' ' + unit[strrappel.rap_dat] +
                         u' ' + unit[strrappel.rap_arc]);
        lines.sort();
        return lines;
    };
    const QStringList whole{QStringLiteral("1 L 000001 D'ALMEIDA Hélène 10/03/2026 N"),
                            QStringLiteral("2 O 000002 D'ALMEIDA Hélène 10/03/2026 N"),
                            QStringLiteral("3 O 000001 D'ALMEIDA Hélène 10/03/2026 O"), QStringLiteral("4 N    N")};
    EXPECT_EQ(found({QStringLiteral("LOT-1"), {}, {}, {}, {}}), whole);
    EXPECT_EQ(found({{}, {}, QStringLiteral("HIP"), QStringLiteral("05/03/2026"), QStringLiteral("05/03/2026")}),
              whole);

    // Sold or delivered, a unit is with its client, whatever the depot of the document.
    molven.update(strproduit, {{strproduit.num_dep, MainDepot}, {strproduit.reg_pat, {}}},
                  strproduit.imm_art == units[0]);
    QStringList holders;
    for (const Record& unit : recall::find(dossier.session, {QStringLiteral("LOT-1"), {}, {}, {}, {}}))
        holders.append(unit[strrappel.rap_imm].right(1) + u' ' + recall::holder(unit) + u' ' +
                       recall::stateWords(unit));
    const QString first = QStringLiteral("Établissement : ") + client(molven, "000001");
    EXPECT_EQ(holders, (QStringList{QStringLiteral("4 Au dépôt principal 001 En stock"),
                                    QStringLiteral("1 ") + first + QStringLiteral(" Livré"),
                                    QStringLiteral("3 ") + first + QStringLiteral(" Vendu, archivé"),
                                    QStringLiteral("2 Établissement : ") + client(molven, "000002") +
                                        QStringLiteral(" Vendu")}));

    const auto refused = [&dossier](const RecallQuery& query) {
        return refusalOf([&] { recall::find(dossier.session, query); });
    };
    EXPECT_EQ(refused({{}, {}, QStringLiteral("HIP"), QStringLiteral("06/03/2026"), {}}),
              QStringLiteral("Aucun produit correspondant à ce critère"));
    EXPECT_EQ(refused({{}, {}, QStringLiteral("HIP"), QStringLiteral("31/02/2026"), {}}),
              QStringLiteral("date invalide"));
    EXPECT_EQ(refused({}), QStringLiteral("Indiquez un lot, une référence fournisseur ou un article"));
}

TEST(Recalls, NameTheirLettersByHospitalSubjectAndDay) {
    const QDate day(2026, 3, 15);
    EXPECT_EQ(recall::letterName({QStringLiteral(" LOT 1/é "), {}, QStringLiteral("HIP"), {}, {}},
                                 QStringLiteral("000001"), day),
              QStringLiteral("RAPPEL-000001-LOT 1_é-20260315.pdf"));
    EXPECT_EQ(recall::letterName({{}, {}, QStringLiteral("HIP"), {}, {}}, QStringLiteral("000002"), day),
              QStringLiteral("RAPPEL-000002-HIP-20260315.pdf"));
    EXPECT_EQ(recall::letterSubject({QStringLiteral(" LOT 1/é "), {}, {}, QStringLiteral("__/__/____"), {}}),
              QStringLiteral("RAPPEL DU LOT LOT 1/é"));
    EXPECT_EQ(recall::letterSubject({{}, {}, QStringLiteral("HIP"), QStringLiteral("01/03/2026"), {}}),
              QStringLiteral("RAPPEL DE L'ARTICLE HIP RECU DU 01/03/2026"))
        << "the hospital must know which recall it answers";
}

} // namespace molven

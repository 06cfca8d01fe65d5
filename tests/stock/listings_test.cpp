#include "support/dossier.h"

#include "data/clock.h"
#include "reference/parameter_tables.h"
#include "stock/patient_enquiry.h"
#include "stock/stock_listing.h"
#include "stock/unit_listing.h"
#include "stock/units.h"

namespace molven {

using test::Dossier;
using test::refusalOf;

namespace {

class Listings : public testing::Test {
protected:
    Dossier dossier;
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    Database historic = workspace.open(dossier.session.historic());

    ~Listings() override { Clock::set({}); }

    QStringList found(const ListingSelection& selection, bool withoutReminded = false) {
        QStringList numbers;
        for (const Record& unit : molven.select(strproduit, unit_listing::criterion(molven, selection, withoutReminded),
                                                unit_listing::order(selection)))
            numbers.append(unit[strproduit.imm_art]);
        return numbers;
    }

    QString stockAt(const QString& day) {
        QStringList counts;
        for (const Record& article : stock_listing::articlesAt({molven, {historic}}, {}, day))
            counts.append(article[strarticle.art_ref] + u'=' + article[strarticle.art_stk].toString());
        return counts.join(u' ');
    }
};

ListingSelection asking(const QHash<QString, QString>& values, const QHash<QString, int>& choices = {}, int order = 0) {
    return {values, choices, order};
}

} // namespace

TEST_F(Listings, SelectByExpiryAcrossYearsAndLeaveOutUnitsWithoutOne) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 4);
    const char* expiries[] = {"11/2029", "02/2030", "12/2031", ""};
    for (int i = 0; i < 4; ++i)
        molven.update(strproduit, {{strproduit.dat_per, QString::fromLatin1(expiries[i])}},
                      strproduit.imm_art == units[i]);
    EXPECT_EQ(found(asking({{QStringLiteral("txtdat_per"), QStringLiteral("02/2030")}})), units.mid(0, 2));
    EXPECT_EQ(found(asking({{QStringLiteral("txtdat_per"), QStringLiteral("__/____")}})), units);
}

TEST_F(Listings, RemindEachUnitOnceUnlessAskedAgain) {
    Clock::set(QDate(2026, 3, 20));
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 2);
    const ListingSelection all = asking({{QStringLiteral("REF1"), QStringLiteral("HIP")}});
    EXPECT_EQ(found(all, true), units);
    Database tri = workspace.open(dossier.session.tri());
    const auto printed = [&](const QString& unit, bool isReminder) {
        working_copy::keep(tri, molven.select(strproduit, strproduit.imm_art == unit));
        return unit_listing::markSelected(molven, tri, isReminder);
    };
    EXPECT_EQ(printed(units[0], true), 1);
    EXPECT_EQ(printed(units[1], false), 1);
    EXPECT_EQ(dossier.unit(units[0])[strproduit.dat_rel], QStringLiteral("20260320"));
    EXPECT_EQ(found(all, true), units.mid(1));
    EXPECT_EQ(found(asking({{QStringLiteral("txtdat_sel"), QStringLiteral("20/03/2026")}})), units);
}

TEST_F(Listings, TellStatesApartAndReturnOnlyWhatIsInStock) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("LIV"), {units[0]});
    dossier.document(QStringLiteral("BTR"), {units[1]}, QStringLiteral("2"));
    const auto inState = [this](int option) { return found(asking({}, {{QStringLiteral("Cmbetat"), option}})); };
    EXPECT_EQ(inState(1), QStringList());
    EXPECT_EQ(inState(2), units.mid(1));
    EXPECT_EQ(inState(3), units.mid(0, 1));
    EXPECT_EQ(inState(4), units.mid(1, 1));
    molven.update(strproduit, {{strproduit.num_dep, ReturnedDepot}}, strproduit.imm_art == units[2]);
    EXPECT_EQ(dossier.unit(units[1])[strproduit.fam_dep], QStringLiteral("OUE"));
    EXPECT_EQ(unit_listing::returnToMainDepot(molven, dossier.session.rules(), unit_listing::criterion(molven, {})), 1);
    EXPECT_EQ(dossier.unit(units[1])[strproduit.fam_dep], QString()) << "the family of the main depot";
    EXPECT_EQ(dossier.unit(units[2])[strproduit.num_dep], ReturnedDepot);
    EXPECT_EQ(inState(4), QStringList());
    EXPECT_EQ(dossier.unit(units[0])[strproduit.num_dep], QStringLiteral("101"));
    EXPECT_EQ(dossier.unit(units[1])[strproduit.num_dep], QStringLiteral("001"));
}

TEST_F(Listings, CountTheStockOfAPastDay) {
    const QStringList march = dossier.receive(QStringLiteral("HIP"), 3, QStringLiteral("05/03/2026"));
    dossier.receive(QStringLiteral("HIP"), 2, QStringLiteral("12/03/2026"));
    dossier.document(QStringLiteral("FAC"), {march[0]}); // invoiced on 10 March
    dossier.document(QStringLiteral("LIV"), {march[1]}); // a delivered unit is still ours
    const Decimal present = dossier.stock(QStringLiteral("HIP"));
    EXPECT_EQ(refusalOf([&] { stockAt(QStringLiteral("20260304")); }),
              QStringLiteral("Aucun article correspondant à ce critère"));
    EXPECT_EQ(stockAt(QStringLiteral("20260309")), QStringLiteral("HIP=3"));
    EXPECT_EQ(stockAt(QStringLiteral("20260310")), QStringLiteral("HIP=2"));
    EXPECT_EQ(stockAt(QStringLiteral("20260312")), QStringLiteral("HIP=4"));
    EXPECT_EQ(dossier.stock(QStringLiteral("HIP")), present);
}

TEST_F(Listings, FindPatientsByTheBeginningOfTheirNameAndKeepThemForPrinting) {
    const QStringList units = dossier.receive(QStringLiteral("HIP"), 3);
    dossier.document(QStringLiteral("FAC"), units.mid(0, 2));
    units::implant(molven, dossier.unit(units[1]),
                   {QStringLiteral("50% d'OR_Léa"), QStringLiteral("2"), QStringLiteral("11/03/2026")});
    const auto patients = [this](const char* beginning) {
        PatientEnquiry enquiry;
        enquiry.patient = QString::fromUtf8(beginning);
        return patient_enquiry::rows({molven}, enquiry, {}, {}).count();
    };
    EXPECT_EQ(patients(""), 2);
    EXPECT_EQ(patients("d'alm"), 1);
    EXPECT_EQ(patients("50% d'OR_L"), 1);
    EXPECT_EQ(patients("50_"), 0);
    EXPECT_EQ(patients("%"), 0);

    Database tri = workspace.open(dossier.session.tri());
    EXPECT_EQ(working_copy::keep(tri, patient_enquiry::select({molven}, {})), 2);
    EXPECT_EQ(working_copy::keep(tri, molven.select(strproduit, strproduit.imm_art == units[2])), 1);
    EXPECT_EQ(tri.count(tripro), 1);
}

TEST_F(Listings, ChangeAConformityAndKeepItsHistory) {
    const QString unit = dossier.receive(QStringLiteral("HIP"), 1).first();
    Record cause(strparam);
    cause[strparam.cod_par] = QStringLiteral("Z");
    cause[strparam.num_par] = QStringLiteral("01");
    cause[strparam.lib_par] = QStringLiteral("CHUTE");
    molven.insert(cause);
    EXPECT_EQ(refusalOf([&] {
                  units::changeConformity(molven, dossier.unit(unit), QStringLiteral("Y"), QStringLiteral("01"));
              }),
              QStringLiteral("Cette cause n'existe pas")); // known among the scrapped only
    units::changeConformity(molven, dossier.unit(unit), QStringLiteral("Z"), QStringLiteral("1"));
    EXPECT_EQ(found(asking({{QStringLiteral("txtfab_cau"), QStringLiteral("01")}}, {{QStringLiteral("Cmbconf"), 4}})),
              QStringList{unit});
    const Record scrapped = dossier.unit(unit);
    units::changeConformity(molven, scrapped, QStringLiteral("O"), {});
    EXPECT_TRUE(refusalOf([&] {
                    units::changeConformity(molven, scrapped, QStringLiteral("O"), {});
                }).startsWith(QStringLiteral("La conformité a été modifiée par un autre poste : ")));
    EXPECT_EQ(dossier.unit(unit)[strproduit.fab_cau], QString());
    QStringList history;
    for (const Record& change : molven.select(strconform)) history.append(change[strconform.conf_typ]);
    EXPECT_EQ(history.join(u' '), QStringLiteral("Z O"));
}

} // namespace molven

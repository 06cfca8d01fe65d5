// What lists, criteria and groups of boxes show.

#include "play/stand_ins.h"
#include "reference/party_tables.h"
#include "screens/screens.h"
#include "stock/unit_tables.h"
#include "support/desks.h"
#include "support/dossier.h"
#include "ui/criteria_panel.h"
#include "ui/edit.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/record_panel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QTest>
#include <QToolTip>

namespace molven {

namespace {

/// The window of listings of units, opened again and again by one user.
class UnitLists : public testing::Test {
protected:
    UnitLists() {
        dossier.receive(QStringLiteral("HIP"), 1);
        open();
    }
    void open() {
        desk.reset();
        desk = test::deskOn(dossier);
        desk->habits.keepIn(
            std::make_unique<QSettings>(own.filePath(QStringLiteral("fenetres.ini")), QSettings::IniFormat));
        form = desk->open(QStringLiteral("T_proedt"));
        for (QWidget* widget : form->findChildren<QWidget*>())
            if (auto* found = dynamic_cast<CriteriaPanel*>(widget)) panel = found;
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    }
    Edit& box(const char* name) { return *panel->edit(QString::fromLatin1(name)); }

    test::Dossier dossier;
    const QTemporaryDir own;
    std::unique_ptr<Desk> desk;
    Form* form = nullptr;
    CriteriaPanel* panel = nullptr;
};

} // namespace

TEST_F(UnitLists, UnfoldACriterionThatIsAskedForAndKeepTheFilledOnesInSight) {
    const QString order = QStringLiteral("txtnof_art");
    ASSERT_TRUE(panel->isFolded());
    EXPECT_TRUE(panel->isInSight(QStringLiteral("DEBIMM")));
    EXPECT_FALSE(panel->isInSight(order));
    box("txtnof_art").setFocus();
    EXPECT_FALSE(panel->isFolded()) << "a refusal or the keyboard brought the cursor there";
    EXPECT_TRUE(panel->isInSight(order));
    box("txtnof_art").setText(QStringLiteral("OF12"));
    panel->fold(true);
    EXPECT_TRUE(panel->isInSight(order));
    EXPECT_FALSE(panel->isInSight(QStringLiteral("txtreg_art")));
}

TEST_F(UnitLists, KeepTheirCriteriaUnderAName) {
    box("txtlot_art").setText(QStringLiteral("L1"));
    box("txtnof_art").setText(QStringLiteral("OF12"));
    panel->keepAs(QStringLiteral("Mon lot"));
    open();
    EXPECT_EQ(panel->keptNames(), QStringList(QStringLiteral("Mon lot")));
    box("txtnum_dep").setText(QStringLiteral("101"));
    panel->takeKept(QStringLiteral("Mon lot"));
    EXPECT_EQ(panel->value(QStringLiteral("txtlot_art")), QStringLiteral("L1"));
    EXPECT_EQ(panel->value(QStringLiteral("txtnum_dep")), QString()) << "only what was kept is asked";
    EXPECT_TRUE(panel->isInSight(QStringLiteral("txtnof_art")));
    panel->forget(QStringLiteral("Mon lot"));
    open();
    EXPECT_EQ(panel->keptNames(), QStringList());
}

TEST_F(UnitLists, TellTheNameBehindACode) {
    form->findChild<QAbstractButton*>(QStringLiteral("cmdvalide"))->click();
    Grid& grid = *static_cast<Grid*>(form->findChild<QTableView*>(QStringLiteral("DBGrid1")));
    const auto tipOver = [&grid](const Field& field) {
        const QModelIndex cell = grid.rows().index(0, grid.rows().columnOf(field.name));
        grid.scrollTo(cell);
        const QPoint place = grid.visualRect(cell).center();
        QHelpEvent event(QEvent::ToolTip, place, grid.viewport()->mapToGlobal(place));
        QApplication::sendEvent(grid.viewport(), &event);
        return QToolTip::text();
    };
    EXPECT_EQ(tipOver(strproduit.num_dep), QStringLiteral("DEPOT PRINCIPAL"));
    EXPECT_EQ(tipOver(strproduit.ref_art), QStringLiteral("ARTICLE HIP"));

    const auto shown = [&grid](const Field& field) {
        return grid.rows().index(0, grid.rows().columnOf(field.name)).data().toString();
    };
    grid.showNames(true);
    EXPECT_EQ(shown(strproduit.num_dep), QStringLiteral("DEPOT PRINCIPAL"));
    EXPECT_EQ(shown(strproduit.lot_art), QStringLiteral("LOT-1")) << "no code";
    EXPECT_EQ(tipOver(strproduit.num_dep), QStringLiteral("001  DEPOT PRINCIPAL"));
    EXPECT_TRUE(grid.csv().contains(QStringLiteral(";001;"))) << "what is exported stays the code";
    open();
    form->findChild<QAbstractButton*>(QStringLiteral("cmdvalide"))->click();
    Grid& again = *static_cast<Grid*>(form->findChild<QTableView*>(QStringLiteral("DBGrid1")));
    EXPECT_TRUE(again.rows().showsNames()) << "the user's habit";
    again.restoreColumns();
    EXPECT_FALSE(again.rows().showsNames());
}

TEST(Numbers, AreReadInThousandsAndStayAsTheyAreForTheRest) {
    RecordModel rows({{&strproduit.pro_pac, QStringLiteral("Prix"), 80, QStringLiteral("#####0.00")}});
    for (const auto& [value, shown] : {std::pair("1779", "1 779,00"), std::pair("-1234567.5", "-1 234 567,50"),
                                       std::pair("-999", "-999,00"), std::pair("12", "12,00")}) {
        Record row(strproduit);
        row.set(strproduit.pro_pac, QString::fromLatin1(value));
        rows.setRecords({row});
        EXPECT_EQ(rows.data(rows.index(0, 0), Qt::DisplayRole).toString(), QString::fromLatin1(shown));
        EXPECT_FALSE(rows.text(0, 0).contains(u' ')) << "exported and filtered without";
    }
}

TEST(Groups, StandWholeInOneColumnUnderTheirName) {
    const auto& c = strclient;
    RecordPanel panel(
        QList<BoxGroup>{{QStringLiteral("Banque"),
                         {{&c.clt_bque, QStringLiteral("Banque")}, {&c.clt_guic, QStringLiteral("Guichet")}}},
                        {QStringLiteral("Adresse"), {{&c.clt_l1, {}}, {&c.clt_l2, {}}, {&c.clt_l3, {}}}},
                        {QStringLiteral("Téléphone"),
                         {{&c.clt_tel1, QStringLiteral("Fixe")}, {&c.clt_tel2, QStringLiteral("Mobile")}}}},
        2, nullptr);
    panel.resize(900, 300);
    panel.show();
    const auto place = [&panel](const Field& field) { return panel.edit(field)->geometry().topLeft(); };
    EXPECT_EQ(place(c.clt_bque).x(), place(c.clt_l3).x()) << "six lines here, three there";
    EXPECT_GT(place(c.clt_tel1).x(), place(c.clt_l1).x());
    EXPECT_EQ(place(c.clt_tel1).x(), place(c.clt_tel2).x());
    EXPECT_EQ(place(c.clt_tel1).y(), place(c.clt_bque).y()) << "both below a name";
    EXPECT_LT(place(c.clt_guic).y(), place(c.clt_l1).y());
    QStringList names;
    for (const QLabel* label : panel.findChildren<QLabel*>())
        if (label->font().bold()) names.append(label->text());
    EXPECT_EQ(names, QStringList({QStringLiteral("Banque"), QStringLiteral("Adresse"), QStringLiteral("Téléphone")}));
}

} // namespace molven

// What a user keeps of the windows: columns, places, and where they are kept.

#include "ui/habits.h"

#include "play/stand_ins.h"
#include "reference/parameter_tables.h"
#include "screens/screens.h"
#include "support/desks.h"
#include "support/dossier.h"
#include "ui/form.h"
#include "ui/grid.h"

#include <QApplication>
#include <QDirIterator>
#include <QHeaderView>
#include <QScreen>
#include <QSysInfo>

namespace molven {

namespace {

/// One user of one installation, who starts the program again and again.
class Habit : public testing::Test {
protected:
    Habit() { restart(); }
    void restart() {
        desk.reset();
        desk = test::deskOn(dossier);
        desk->habits.keepIn(std::make_unique<QSettings>(store(), QSettings::IniFormat));
    }
    QString store() const { return own.filePath(QStringLiteral("fenetres.ini")); }
    Form& clients() { return *desk->open(QStringLiteral("t_cltges")); }
    static Grid& list(Form& form) {
        return *static_cast<Grid*>(form.findChild<QTableView*>(QStringLiteral("DBGrid1")));
    }

    const test::Dossier dossier;
    const QTemporaryDir own;
    std::unique_ptr<Desk> desk;
};

} // namespace

TEST_F(Habit, WithColumnsComesBackAndCanBeGivenUp) {
    QHeaderView* header = list(clients()).horizontalHeader();
    const int described = header->sectionSize(0);
    header->resizeSection(0, described + 57);
    header->moveSection(0, 1);
    list(clients()).sortByColumn(1, Qt::DescendingOrder);
    restart();
    Grid& again = list(clients());
    header = again.horizontalHeader();
    EXPECT_EQ(header->sectionSize(0), described + 57);
    EXPECT_EQ(header->logicalIndex(0), 1);
    EXPECT_EQ(header->sortIndicatorSection(), 1);
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(again.rows().text(0, 0), QStringLiteral("000002")) << "the rows are sorted as the header says";
    EXPECT_EQ(list(*desk->open(QStringLiteral("T_fouges"))).horizontalHeader()->logicalIndex(0), 0)
        << "another screen's list is another habit";

    again.restoreColumns();
    EXPECT_EQ(header->sectionSize(0), described);
    EXPECT_EQ(header->logicalIndex(0), 0);
    restart();
    EXPECT_EQ(list(clients()).horizontalHeader()->logicalIndex(0), 0);
}

TEST_F(Habit, WithColumnsThatAreNoMoreIsLeftAside) {
    clients().close();
    desk.reset();
    QSettings kept(store(), QSettings::IniFormat);
    kept.setValue(QSysInfo::machineHostName() + QStringLiteral("/t_cltges/DBGrid1/colonnes"),
                  QStringList{QStringLiteral("abandonne:80"), QStringLiteral("clt_nom:210"), QStringLiteral(":"), {}});
    kept.setValue(QSysInfo::machineHostName() + QStringLiteral("/t_cltges/DBGrid1/tri"), QStringLiteral("abandonne:+"));
    kept.sync();
    restart();
    Grid& grid = list(clients());
    EXPECT_EQ(grid.horizontalHeader()->logicalIndex(0), grid.rows().columnOf(QStringLiteral("clt_nom")));
    EXPECT_EQ(grid.columnWidth(grid.rows().columnOf(QStringLiteral("clt_nom"))), 210);
    EXPECT_EQ(grid.horizontalHeader()->sortIndicatorSection(), -1);
}

TEST_F(Habit, WithWindowsComesBackWithinTheScreen) {
    Form* form = &clients();
    form->setGeometry(60, 50, 1100, 690);
    form->close();
    restart();
    form = &clients();
    EXPECT_EQ(form->geometry(), QRect(60, 50, 1100, 690));
    form->setGeometry(900, 500, 1100, 690); // half of it was on a second screen
    form->close();
    restart();
    form = &clients();
    EXPECT_TRUE(QApplication::primaryScreen()->availableGeometry().contains(form->geometry()));
    EXPECT_EQ(form->size(), QSize(1100, 690));
    form->showMaximized();
    form->close();
    restart();
    EXPECT_TRUE(clients().isMaximized());
}

TEST_F(Habit, LiesNeitherInTheDossierNorAnywhereWithoutAStore) {
    Form* form = &clients();
    form->setGeometry(60, 50, 1100, 690);
    form->close();
    desk->habits.keepIn(nullptr);
    form = &clients();
    EXPECT_NE(form->geometry().topLeft(), QPoint(60, 50)) << "in the middle of the screen, as at first";
    QDirIterator files(dossier.folder(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) EXPECT_FALSE(files.next().endsWith(QStringLiteral(".ini")));
}

TEST(Columns, ShareTheRoomAndStayWhole) {
    Record row(strparam);
    row.set(strparam.num_par, QStringLiteral("ABC"));
    row.set(strparam.lib_par, QStringLiteral("UN LIBELLE DE LONGUEUR MOYENNE"));
    Grid grid(QStringLiteral("DBGrid1"),
              {{&strparam.num_par, QStringLiteral("Code")}, {&strparam.lib_par, QStringLiteral("Libellé")}}, nullptr);
    grid.rows().setRecords({row});
    grid.show();
    for (const int width : {300, 700, 1900}) {
        grid.resize(width, 200);
        QApplication::processEvents();
        EXPECT_EQ(grid.horizontalHeader()->length(), grid.viewport()->width()) << width;
        EXPECT_LT(grid.columnWidth(0), 90) << "a code takes what it needs, words take the rest";
    }
    Grid codes(QStringLiteral("DBGrid2"),
               {{&strparam.cod_par, QStringLiteral("Liste")}, {&strparam.num_par, QStringLiteral("Code")}}, nullptr);
    codes.rows().setRecords({row});
    codes.resize(900, 200);
    codes.show();
    QApplication::processEvents();
    EXPECT_EQ(codes.horizontalHeader()->length(), codes.viewport()->width()) << "no words: the last column reaches on";
}

} // namespace molven

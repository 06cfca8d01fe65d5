#include "ui/form.h"
#include "ui/grid.h"

#include "data/clock.h"
#include "data/dates.h"
#include "play/stand_ins.h"
#include "reference/article_tables.h"
#include "reference/parameter_tables.h"
#include "screens/screens.h"
#include "support/dossier.h"
#include "ui/edit.h"
#include "ui/printer.h"
#include "ui/prompt.h"
#include "ui/record_panel.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace molven {

namespace {

QList<Record> vatCodes() {
    QList<Record> rows;
    for (const auto& [code, label, rate] :
         {std::tuple("1", "réduit; \"5,5\"", "5.5"), std::tuple("2", "Normal", "20"), std::tuple("3", "été", "10")}) {
        Record row(strparfac);
        row[strparfac.par1_cde] = QString::fromUtf8(code);
        row[strparfac.par1_lib] = QString::fromUtf8(label);
        row[strparfac.par1_tx] = *Decimal::parse(QString::fromLatin1(rate));
        rows.append(row);
    }
    return rows;
}

class VatGrid : public testing::Test {
protected:
    VatGrid()
        : grid(QStringLiteral("DBGrid1"),
               {{&strparfac.par1_cde, QStringLiteral("Code")},
                {&strparfac.par1_lib, QStringLiteral("Libellé")},
                {&strparfac.par1_tx, QStringLiteral("Taux"), 80, QStringLiteral("#0.00")}},
               nullptr) {
        grid.rows().setRecords(vatCodes());
    }
    QString codes() {
        QString text;
        for (int row = 0; row < grid.rows().rowCount(); ++row) text += grid.rows().text(row, 0);
        return text;
    }
    Grid grid;
};

} // namespace

TEST(Questions, AreNotAnsweredByWhatAScannerTypes) {
    MessageBoxPrompt prompt;
    for (const QString& scanned : {QStringLiteral("o"), QStringLiteral("COT060"), QStringLiteral("O")}) {
        QTimer::singleShot(0, [&] {
            QTest::keyClicks(QApplication::activeModalWidget(), scanned);
            for (QPushButton* button : QApplication::activeModalWidget()->findChildren<QPushButton*>())
                EXPECT_FALSE(button->isDown()) << scanned.toStdString();
            QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
        });
        EXPECT_FALSE(prompt.confirm(QStringLiteral("Supprimer ?"), QStringLiteral("Client 000041")))
            << scanned.toStdString();
    }
    QTimer::singleShot(0, [] {
        for (QPushButton* button : QApplication::activeModalWidget()->findChildren<QPushButton*>())
            if (button->text() == u"&Oui") button->click();
    });
    EXPECT_TRUE(prompt.confirm(QStringLiteral("Supprimer ?"), QStringLiteral("Client 000041")));
}

TEST_F(VatGrid, KeepsItsOrderUntilAHeaderIsClickedAndSortsNumbersAsNumbers) {
    EXPECT_EQ(codes(), QStringLiteral("123"));
    grid.sortByColumn(2, Qt::AscendingOrder);
    EXPECT_EQ(codes(), QStringLiteral("132"));
    grid.sortByColumn(2, Qt::DescendingOrder);
    EXPECT_EQ(codes(), QStringLiteral("231"));
    grid.sortByColumn(1, Qt::AscendingOrder);
    EXPECT_EQ(codes(), QStringLiteral("321"));
}

TEST_F(VatGrid, FiltersWithoutRegardToAccentsAndCopiesTheChosenRow) {
    QTest::keyClicks(&grid, QStringLiteral("ete"));
    EXPECT_EQ(codes(), QStringLiteral("3"));
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("3\tété\t10,00"));
    QTest::keyClick(&grid, Qt::Key_Escape);
    EXPECT_EQ(codes(), QStringLiteral("123"));
}

TEST_F(VatGrid, SaysInAnExportWhichFilterNarrowsIt) {
    QTest::keyClicks(&grid, QStringLiteral("norm"));
    EXPECT_EQ(grid.csv(), QStringLiteral("Code;Libellé;Taux\r\n2;Normal;20,00\r\nfiltre : norm\r\n"));
}

TEST_F(VatGrid, ExportsWhatItShowsForASpreadsheet) {
    EXPECT_EQ(
        grid.csv(),
        QStringLiteral("Code;Libellé;Taux\r\n1;\"réduit; \"\"5,5\"\"\";5,50\r\n2;Normal;20,00\r\n3;été;10,00\r\n"));
}

TEST_F(VatGrid, ShowsWhatItIsFilteredByAndTellsEveryChangeOfItsCurrentRow) {
    QStringList told;
    grid.becameCurrent = [&told](const Record& row) { told.append(row[strparfac.par1_cde]); };
    grid.show();
    grid.selectRow(0);
    QTest::keyClick(&grid, Qt::Key_Down);
    QTest::keyClicks(&grid, QStringLiteral("ete"));
    const auto* strip = grid.findChild<QLabel*>(QStringLiteral("Lblfiltre"));
    ASSERT_NE(strip, nullptr);
    EXPECT_TRUE(strip->isVisible());
    EXPECT_TRUE(strip->text().startsWith(QStringLiteral("Filtre : ete     1 sur 3")));
    EXPECT_EQ(told.last(), QStringLiteral("3"));
    QTest::keyClick(&grid, Qt::Key_Escape);
    EXPECT_FALSE(strip->isVisible());
    grid.followRecord(vatCodes()[1], {&strparfac.par1_cde});
    EXPECT_EQ(grid.currentIndex().row(), 1);
    EXPECT_EQ(told.last(), QStringLiteral("1")) << "the screen shows the record already";
    EXPECT_EQ(told.mid(0, 2), QStringList({QStringLiteral("1"), QStringLiteral("2")}));
}

TEST(RecordPanels, StoreOnlyWhatTheUserChanged) {
    Record article(strarticle);
    article.set(strarticle.art_pam, QStringLiteral("514.5555"));
    article.set(strarticle.art_pv1, QStringLiteral("12.345"));
    const QString money = QStringLiteral("#####0.00");
    RecordPanel panel({{.field = &strarticle.art_pam, .caption = {}, .pattern = money, .readOnly = true},
                       {.field = &strarticle.art_pv1, .caption = {}, .pattern = money},
                       {.field = &strarticle.art_memo, .caption = {}}},
                      1, nullptr);
    panel.load(article);
    EXPECT_FALSE(panel.differsFrom(article));
    panel.edit(strarticle.art_memo)->setText(QStringLiteral("à commander"));
    panel.edit(strarticle.art_pam)->setText(QStringLiteral("1"));
    EXPECT_TRUE(panel.differsFrom(article));
    panel.store(article);
    EXPECT_EQ(article.value(strarticle.art_pam), QStringLiteral("514.5555"));
    EXPECT_EQ(article.value(strarticle.art_pv1), QStringLiteral("12.345"));
    EXPECT_EQ(article.value(strarticle.art_memo), QStringLiteral("à commander"));
    panel.edit(strarticle.art_pv1)->setText(QStringLiteral("12,4"));
    panel.store(article);
    EXPECT_EQ(article.value(strarticle.art_pv1), QStringLiteral("12.4"));
}

TEST(DataErrors, AreShownWithTheEnginesOwnListOnlyWhenItHasOne) {
    play::ScriptedPrompt prompt;
    showDataError(prompt, DataError(3197, QStringLiteral("Modifié ailleurs.")));
    EXPECT_EQ(prompt.unchecked.dequeue(),
              QStringLiteral("L'erreur suivante s'est produite:\r\n\r\nModifié ailleurs.\r\nNuméro d'erreur: 3197"));
    prompt.answers.append({true, false});
    const DataError listed(11, QStringLiteral("Endommagé."), {{11, QStringLiteral("malformed")}});
    showDataError(prompt, listed);
    EXPECT_TRUE(prompt.unchecked.dequeue().endsWith(
        QStringLiteral("Numéro d'erreur: 11\r\n\r\nAfficher la liste des erreurs d'accès aux données?")));
    EXPECT_EQ(prompt.unchecked.dequeue(), QStringLiteral("11 : malformed"));
    showDataError(prompt, listed);
    EXPECT_EQ(prompt.unchecked.size(), 1);
    prompt.unchecked.clear();
    showDataError(prompt, DataError(7, QStringLiteral("Autre."), {{11, QStringLiteral("malformed")}}));
    EXPECT_FALSE(prompt.unchecked.dequeue().contains(QStringLiteral("Afficher")));
}

TEST(DateBoxes, AreEmptyWithoutDigits) {
    DateBox box;
    EXPECT_EQ(box.displayText(), QStringLiteral("__/__/____"));
    EXPECT_EQ(box.value(), QString());
    box.put(QStringLiteral("05/03/2026"));
    EXPECT_EQ(box.value(), QStringLiteral("05/03/2026"));
}

TEST(Reminders, AreMarkedWhenTheListIsPrintedAndNotWhenItIsOnlyLookedAt) {
    test::Dossier dossier;
    dossier.receive(QStringLiteral("HIP"), 2);
    auto prompt = std::make_unique<play::ScriptedPrompt>();
    prompt->answers.append(true); // the units reminded already, too
    auto printer = std::make_unique<play::KeepingPrinter>(QString());
    play::KeepingPrinter& user = *printer;
    Desk desk(dossier.folder(), std::move(prompt), std::move(printer));
    addScreens(desk);
    desk.session = dossier.session;
    Form* form = desk.open(QStringLiteral("T_proedt"));
    ASSERT_NE(form, nullptr);
    form->findChild<QComboBox*>(QStringLiteral("Cmbrelance"))->setCurrentIndex(1);
    form->findChild<QPushButton*>(QStringLiteral("cmdvalide"))->click();
    Workspace workspace;
    Database molven = workspace.open(dossier.session.molven());
    for (const bool prints : {false, true}) {
        user.prints = prints;
        form->findChild<QPushButton*>(QStringLiteral("Cmdimp"))->click();
        const QString today = sortKey(Clock::today());
        EXPECT_EQ(molven.count(strproduit, strproduit.dat_rel == today && strproduit.dat_sel == today), prints ? 2 : 0);
    }
    EXPECT_EQ(user.printed, 2);
}

/// Counts the displays of progress that stand over the preview.
class WatchedPreview : public PrintTarget {
public:
    bool print(const PrintJob&) override {
        for (const QWidget* window : QApplication::topLevelWidgets())
            displays += qobject_cast<const QProgressDialog*>(window) ? 1 : 0;
        return true;
    }
    int displays = 0;
};

TEST(Desks, HaveLaidOutAListBeforeTheyShowIt) {
    const test::Dossier dossier;
    auto preview = std::make_unique<WatchedPreview>();
    const WatchedPreview& shown = *preview;
    Desk desk(dossier.folder(), std::make_unique<play::ScriptedPrompt>(), std::move(preview));
    desk.session = dossier.session;
    ASSERT_NE(desk.open(QStringLiteral("T_nouveau")), nullptr);
    Report list(QStringLiteral("LISTE"), {{QStringLiteral("Article")}});
    list.row({QStringLiteral("HIP")});
    EXPECT_TRUE(desk.print(list));
    EXPECT_EQ(shown.displays, 0);
}

TEST(Desks, RefuseASecondCopyAndShowAFileThatIsMissing) {
    const test::Dossier dossier;
    auto prompt = std::make_unique<play::ScriptedPrompt>();
    play::ScriptedPrompt& said = *prompt;
    Desk desk(dossier.folder(), std::move(prompt), std::make_unique<play::KeepingPrinter>(QString()));
    desk.isAlreadyRunning = [] { return true; };
    startProgram(desk);
    EXPECT_EQ(said.unchecked.dequeue(), QStringLiteral("Ce programme est déjà lancé"));

    desk.session = dossier.session;
    desk.session.chemin_tri = QStringLiteral("/nulle/part/");
    said.answers.append(false);
    EXPECT_EQ(desk.open(QStringLiteral("T_etibarre")), nullptr);
    EXPECT_TRUE(said.unchecked.dequeue().contains(QStringLiteral("/nulle/part/tri.mdb")));
    Form* unbuilt = desk.open(QStringLiteral("T_nouveau"), QString(), QStringLiteral("c.a. par &Clients  "));
    ASSERT_NE(unbuilt, nullptr);
    EXPECT_EQ(unbuilt->windowTitle(), QStringLiteral("c.a. par Clients"));
}

} // namespace molven

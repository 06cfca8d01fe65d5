#include "screens/screens.h"
#include "screens/shell/first_start.h"
#include "shell/guide.h"
#include "support/dossier.h"
#include "ui/desk.h"
#include "ui/form.h"
#include "ui/style.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>

namespace molven {

TEST(Guide, ExplainsEveryScreenAndLinksToPagesThatExist) {
    test::Dossier dossier;
    Desk desk(dossier.folder(), std::make_unique<MessageBoxPrompt>(), nullptr);
    addScreens(desk);
    const QStringList pages = guide::pages();
    for (const QString& screen : desk.screens())
        EXPECT_TRUE(pages.contains(guide::pageOf(screen))) << screen.toStdString() << " has no page";
    static const QRegularExpression link(QStringLiteral("\\]\\(([^)]+)\\)"));
    const QDir folder(QStringLiteral(":/guide"));
    for (const QString& file : folder.entryList({QStringLiteral("*.md")})) {
        EXPECT_TRUE(pages.contains(file.chopped(3))) << file.toStdString() << " is in no table of contents";
        auto found = link.globalMatch(guide::textOf(file.chopped(3)));
        while (found.hasNext()) {
            const QString target = found.next().captured(1);
            EXPECT_TRUE(folder.exists(target)) << file.toStdString() << " names " << target.toStdString();
        }
    }
}

TEST(Guide, KeepsItsLinesReadableAndItsPicturesAsLargeAsTheWindow) {
    test::Dossier dossier;
    Desk desk(dossier.folder(), std::make_unique<MessageBoxPrompt>(), nullptr);
    addScreens(desk);
    Form* form = desk.open(QStringLiteral("T_guide"), QStringLiteral("prix"));
    const auto* page = form->findChild<QTextBrowser*>(QStringLiteral("Page"));
    const auto pictureWidth = [page] {
        for (QTextBlock block = page->document()->begin(); block.isValid(); block = block.next())
            for (auto piece = block.begin(); !piece.atEnd(); ++piece)
                if (piece.fragment().charFormat().isImageFormat())
                    return piece.fragment().charFormat().toImageFormat().width();
        return 0.0;
    };
    form->resize(500, 400);
    QCoreApplication::processEvents();
    EXPECT_LE(pictureWidth(), 500);
    form->resize(2400, 900);
    QCoreApplication::processEvents();
    EXPECT_GT(pictureWidth(), 1000) << "it grows again with the window";
    EXPECT_LE(page->document()->textWidth(), style::readableWidth());
    EXPECT_GT(page->document()->textWidth(), 400);
}

TEST(FirstStart, CreatesOpensAndRefuses) {
    QTemporaryDir folder;
    MessageBoxPrompt prompt;
    FirstStart offer(prompt);
    const auto choose = [&offer](const char* name) { offer.findChild<QAbstractButton*>(name)->click(); };
    const auto type = [&offer](const char* name, const QString& text) {
        offer.findChild<QLineEdit*>(name)->setText(text);
    };
    const QString home = folder.filePath(QStringLiteral("l'installation"));
    type("txtdossier", home);
    choose("Optouvrir");
    choose("Cmdok");
    EXPECT_FALSE(offer.findChild<QLabel*>("Lblrefus")->text().isEmpty()) << "nothing to open";
    EXPECT_EQ(offer.home(), QString());
    choose("Optconvertir");
    choose("Cmdok");
    EXPECT_EQ(offer.findChild<QLabel*>("Lblrefus")->text(), QStringLiteral("Indiquez le dossier des bases à convertir"))
        << "nothing typed is not the current folder";
    choose("Optcreer");
    type("txtcode", QStringLiteral("c"));
    choose("Cmdok");
    EXPECT_EQ(offer.home(), QString()) << "a code has two letters";
    EXPECT_FALSE(QFile::exists(home + QStringLiteral("/CHEMIN.HC")));
    type("txtcode", QStringLiteral("ce"));
    type("txtnom", QStringLiteral("SOCIÉTÉ D'ÉTÉ"));
    choose("Cmdok");
    EXPECT_EQ(offer.home(), home);
    FirstStart again(prompt);
    again.findChild<QLineEdit*>("txtdossier")->setText(home);
    again.findChild<QAbstractButton*>("Optouvrir")->click();
    again.findChild<QAbstractButton*>("Cmdok")->click();
    EXPECT_EQ(again.result(), QDialog::Accepted);
}

} // namespace molven

#include "shell/attached_documents.h"

#include "play/stand_ins.h"
#include "screens/reference/document_shelf.h"
#include "screens/reference/supplier_form.h"
#include "support/dossier.h"

#include <QDir>
#include <QFile>

namespace molven {

namespace attached = attached_documents;

TEST(AttachedDocuments, AskOnlyBeforeALowerCaseProgram) {
    EXPECT_EQ(attached::extension(QStringLiteral("a.b/c.tar.gz ")), QStringLiteral("gz"));
    EXPECT_EQ(attached::extension(QStringLiteral("sans")), QString());
    EXPECT_TRUE(attached::isProgram(QStringLiteral(" outil.exe ")));
    EXPECT_FALSE(attached::isProgram(QStringLiteral("OUTIL.EXE")));
}

TEST(AttachedDocuments, TellWhyAFileDoesNotOpen) {
    const QTemporaryDir folder;
    EXPECT_EQ(attached::message(attached::open(folder.filePath(QStringLiteral("non/la.txt")))),
              QStringLiteral("Le chemin du fichier à ouvrir est incorrect."));
    EXPECT_EQ(attached::message(attached::open(QStringLiteral("  ") + folder.filePath(QStringLiteral("absent.txt")))),
              QString());
    EXPECT_EQ(attached::message(5), QStringLiteral("Accès au fichier refusé."));
    EXPECT_EQ(attached::message(attached::NoAssociation), QString());
    EXPECT_EQ(attached::message(99), QString());
}

TEST(AttachedDocuments, DroppedOnTheListAreCopiedIntoTheFolderAndNeverOverAnother) {
    test::Dossier dossier;
    auto owned = std::make_unique<play::ScriptedPrompt>();
    play::ScriptedPrompt& prompt = *owned;
    Desk desk(dossier.folder(), std::move(owned), std::make_unique<play::KeepingPrinter>(QString()));
    desk.session = dossier.session;
    SupplierForm form(desk);
    auto* shelf = form.findChild<QFrame*>(QStringLiteral("Framedoc"));
    ASSERT_NE(shelf, nullptr);
    QDir(dossier.folder()).mkpath(QStringLiteral("l'été"));
    static_cast<DocumentShelf*>(shelf)->show(QStringLiteral("l'été"));

    const QString source = dossier.folder() + QStringLiteral("/contrat signé.pdf");
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("%PDF");
    file.close();
    for (int drop = 0; drop < 2; ++drop) static_cast<DocumentShelf*>(shelf)->add({source});
    EXPECT_TRUE(QFile::exists(dossier.folder() + QStringLiteral("/l'été/contrat signé.pdf")));
    EXPECT_EQ(prompt.unchecked.size(), 1);
    EXPECT_EQ(prompt.unchecked.value(0), QStringLiteral("Ce document existe déjà : contrat signé.pdf"));
    EXPECT_EQ(attached::list(dossier.folder() + QStringLiteral("/l'été")),
              QStringList(QStringLiteral("contrat signé.pdf")));
}

} // namespace molven

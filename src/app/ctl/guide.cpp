#include "app/ctl/command.h"

#include "data/errors.h"
#include "data/safe_file.h"
#include "shell/guide.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QDir>
#include <QPageSize>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <memory>

namespace molven::ctl {

namespace {

constexpr int PictureWidth = 640; // pixels, of a page of A4

std::unique_ptr<QTextDocument> document(const QString& markdown) {
    auto made = std::make_unique<QTextDocument>();
    made->setBaseUrl(guide::addressOf(guide::Contents));
    made->setDefaultFont(QFont(QStringLiteral("Liberation Sans"), 10));
    made->setMarkdown(markdown);
    return made;
}

void writeHtml(const QDir& folder, const QString& page) {
    static const QRegularExpression link(QStringLiteral("\\]\\(([a-z-]+)\\.md\\)"));
    const auto made = document(guide::textOf(page).replace(link, QStringLiteral("](\\1.html)")));
    guide::fitPictures(*made, 900);
    writeWhole(folder.filePath(page + QStringLiteral(".html")), made->toHtml().toUtf8(), Existing::Replace);
}

/// All pages, each on a new sheet; links between them are words there.
QByteArray pdf() {
    static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([a-z-]+\\.md\\)"));
    const auto whole = document({});
    QTextCursor end(whole.get());
    for (const QString& page : guide::pages()) {
        const auto made = document(guide::textOf(page).replace(link, QStringLiteral("\\1")));
        QTextBlockFormat newSheet;
        newSheet.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        if (page == guide::Contents)
            newSheet.clearProperty(QTextFormat::PageBreakPolicy);
        else
            end.insertBlock(newSheet, QTextCharFormat());
        end.insertFragment(QTextDocumentFragment(made.get()));
        end.movePosition(QTextCursor::End);
    }
    guide::fitPictures(*whole, PictureWidth);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setTitle(QStringLiteral("MOLVEN, guide de l'utilisateur"));
    whole->print(&writer);
    return bytes;
}

int write(const QCommandLineParser&, const QStringList& arguments) {
    const QDir folder(arguments[0]);
    if (!folder.mkpath(QStringLiteral("images")))
        throw Refusal(QStringLiteral("Impossible de créer le dossier ") + QDir::toNativeSeparators(folder.path()));
    for (const QString& page : guide::pages()) writeHtml(folder, page);
    for (const QString& picture : QDir(QStringLiteral(":/guide/images")).entryList()) {
        QFile file(QStringLiteral(":/guide/images/") + picture);
        if (file.open(QIODevice::ReadOnly))
            writeWhole(folder.filePath(QStringLiteral("images/") + picture), file.readAll(), Existing::Replace);
    }
    writeWhole(folder.filePath(QStringLiteral("guide.pdf")), pdf(), Existing::Replace);
    writeWhole(folder.filePath(QStringLiteral("molvenctl.1")), manual().toUtf8(), Existing::Replace);
    writeWhole(folder.filePath(QStringLiteral("molvenctl.bash")), completion().toUtf8(), Existing::Replace);
    say(QStringLiteral("guide : ") + QDir::toNativeSeparators(folder.filePath(QStringLiteral("index.html"))));
    return 0;
}

} // namespace

Command guideCommand() {
    return {QStringLiteral("guide"),
            QStringLiteral("écrit le guide en HTML et en un PDF, la page de manuel et la complétion de bash"),
            QStringLiteral("CIBLE"),
            [](Options&) {},
            write,
            1,
            true};
}

} // namespace molven::ctl

#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

class QTextDocument;

/// The users' guide: a page a subject in Markdown, within the program.
namespace molven::guide {

inline const QString Contents = QStringLiteral("index");

/// Every page in the order of the table of contents, which comes first: "index", "clavier", ...
QStringList pages();
/// Where a page lies: "qrc:/guide/index.md"; its pictures and links start from there.
QUrl addressOf(const QString& page);
/// The Markdown of a page; empty for one that does not exist.
QString textOf(const QString& page);
/// The page that explains a screen ("T_gestion"); empty for a screen that none explains.
QString pageOf(const QString& screen, const QString& mode = {});
/// No picture is wider than that (pixels).
void fitPictures(QTextDocument& document, int width);

} // namespace molven::guide

#include "app/ctl/command.h"

#include "data/errors.h"
#include "data/safe_file.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace molven::ctl {

namespace {

const QString Replace = QStringLiteral("remplacer");

/// A file that a dossier lives by, or that guards it.
bool isOurs(const QString& path) {
    static const QStringList kinds{QStringLiteral("mdb"), QStringLiteral("hc"), QStringLiteral("svi")};
    return kinds.contains(QFileInfo(QFileInfo(path).canonicalFilePath()).suffix().toLower());
}

} // namespace

QCommandLineOption jsonOption() { return {QStringLiteral("json"), QStringLiteral("résultat en JSON")}; }
bool wantsJson(const QCommandLineParser& parser) { return parser.isSet(QStringLiteral("json")); }

void sayData(const QJsonValue& data) {
    const QJsonDocument document = data.isArray() ? QJsonDocument(data.toArray()) : QJsonDocument(data.toObject());
    say(QString::fromUtf8(document.toJson(QJsonDocument::Compact)));
}

QCommandLineOption replaceOption() { return {Replace, QStringLiteral("remplace le fichier s'il existe déjà")}; }

void requireWritable(const QCommandLineParser& parser, const QString& path) {
    const bool replaces = parser.isSet(Replace);
    if (replaces && isOurs(path))
        throw Refusal(QStringLiteral("Le fichier %1 est un fichier du programme : il n'est pas remplacé").arg(path));
    if (!replaces && QFileInfo(path).isFile())
        throw Refusal(QStringLiteral("Le fichier %1 existe déjà : ajoutez --%2 pour le remplacer").arg(path, Replace));
}

void writeOut(const QCommandLineParser& parser, const QString& path, const QByteArray& bytes) {
    requireWritable(parser, path);
    writeWhole(path, bytes, parser.isSet(Replace) ? Existing::Replace : Existing::Refuse);
}

} // namespace molven::ctl

#include "shell/attached_documents.h"

#include "data/errors.h"
#include "data/safe_file.h"
#include "shell/folder_files.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QUrl>

namespace molven::attached_documents {

QString extension(const QString& path) {
    const QString name = path.trimmed();
    const qsizetype point = name.lastIndexOf(u'.');
    return point < 0 ? QString() : name.mid(point + 1);
}

bool isProgram(const QString& path) { return extension(path) == u"exe"; }

int open(const QString& path) {
    const QFileInfo file(path.trimmed());
    if (!file.dir().exists()) return PathNotFound;
    if (!file.exists()) return FileNotFound;
    if (!file.isReadable()) return AccessDenied;
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()))) return Opened;
#ifdef Q_OS_WIN
    // The system's chooser of programs.
    QProcess::startDetached(QStringLiteral("rundll32.exe"), {QStringLiteral("shell32.dll,OpenAs_RunDLL"),
                                                             QDir::toNativeSeparators(file.absoluteFilePath())});
    return NoAssociation;
#else
    return 27; // no chooser to start: the association is incomplete
#endif
}

QString message(int result) {
    static const QHash<int, QString> messages{
        {PathNotFound, QStringLiteral("Le chemin du fichier à ouvrir est incorrect.")},
        {AccessDenied, QStringLiteral("Accès au fichier refusé.")},
        {8, QStringLiteral("Mémoire insuffisante.")},
        {SharingViolation, QStringLiteral("Le fichier est déjà ouvert.")},
        {27, QStringLiteral("Information d'association du fichier incomplète.")},
        {28, QStringLiteral("Opération DDE dépassée.")},
        {29, QStringLiteral("Opération DDE echouée.")},
        {30, QStringLiteral("Opération DDE occupée.")},
        {32, QStringLiteral("Dynamic-link library non trouvé.")}};
    return messages.value(result);
}

QString root(const Session& session) {
    if (!session.rules().hasDocumentsRoot()) return {};
    return folderFrom(session.dossier_app, QStringLiteral("CHEMIN.CE")).value_or(QString());
}

QStringList list(const QString& folder) {
    if (folder.trimmed().isEmpty()) return {};
    return QDir(folder).entryList(QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
}

void copyInto(const QString& folder, const QString& file) {
    if (folder.trimmed().isEmpty() || !QDir().mkpath(folder))
        throw Refusal(QStringLiteral("Le chemin du fichier à ouvrir est incorrect."));
    const QString target = QDir(folder).filePath(QFileInfo(file).fileName());
    if (QFile::exists(target)) throw Refusal(QStringLiteral("Ce document existe déjà : ") + QFileInfo(file).fileName());
    QFile original(file);
    if (!original.open(QIODevice::ReadOnly))
        throw Refusal(QStringLiteral("Impossible de copier le document ") + QFileInfo(file).fileName());
    writeWhole(target, original.readAll(), Existing::Refuse);
}

} // namespace molven::attached_documents

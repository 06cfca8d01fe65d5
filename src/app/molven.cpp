#include "data/journal.h"
#include "data/layout.h"
#include "dossier/creation.h"
#include "screens/screens.h"
#include "screens/shell/first_start.h"
#include "screens/shell/server_password.h"
#include "ui/desk.h"
#include "ui/icons.h"
#include "ui/printer.h"
#include "ui/prompt.h"
#include "ui/style.h"
#include "ui/upgrade_display.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QLockFile>
#include <QTranslator>

#include <optional>

using namespace molven;

namespace {

/// One lock a workstation and an installation: the data folder is shared, the lock is not.
QString lockPath(const QString& home) {
    const QByteArray name = QCryptographicHash::hash(home.toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
    return QDir::temp().filePath(QStringLiteral("molven-") + QString::fromLatin1(name) + QStringLiteral(".lock"));
}

const QString LastHome = QStringLiteral("programme/dossier");

std::unique_ptr<QSettings> settings() {
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("MOLVEN"),
                                       QStringLiteral("fenetres"));
}

bool holdsInstallation(const QString& folder) {
    if (folder.isEmpty()) return false;
    creation::finish(folder);
    return QFile::exists(QDir(folder).filePath(QStringLiteral("CHEMIN.HC"))) ||
           QFile::exists(QDir(folder).filePath(QStringLiteral("societe.mdb")));
}

/// The folder of the executable; one that holds no installation gives way to the last one that this user chose, and to
/// the question what to do. None when the user leaves that.
std::optional<QString> programFolder() {
    const QString own = QApplication::applicationDirPath();
    if (holdsInstallation(own)) return own;
    const auto kept = settings();
    if (const QString last = kept->value(LastHome).toString(); holdsInstallation(last)) return last;
    MessageBoxPrompt prompt;
    FirstStart offer(prompt);
    if (offer.exec() != QDialog::Accepted) return std::nullopt;
    kept->setValue(LastHome, offer.home());
    return offer.home();
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    style::apply(application);
    QApplication::setWindowIcon(icons::program());
    QTranslator toolkit;
    if (toolkit.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                     QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&toolkit);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("MOLVEN, traçabilité des implants"));
    parser.addHelpOption();
    parser.addVersionOption();
    QApplication::setApplicationName(QStringLiteral("MOLVEN"));
    QApplication::setApplicationVersion(author::programVersion());
    const QString homeOption = QStringLiteral("home");
    parser.addOption({homeOption, QStringLiteral("dossier du programme"), QStringLiteral("DIR")});
    parser.process(application);
    askServerPasswordInWindow();
    Layout::showUpgrades(upgradeDisplay);
    const std::optional<QString> folder = parser.isSet(homeOption) ? parser.value(homeOption) : programFolder();
    if (!folder) return 0;
    const QString home = QDir(*folder).absolutePath();

    QLockFile lock(lockPath(home));
    lock.setStaleLockTime(0);
    const bool first = lock.tryLock(0);
    Desk desk(home, std::make_unique<MessageBoxPrompt>(), std::make_unique<PreviewPrinter>());
    desk.isAlreadyRunning = [first] { return !first; };
    desk.habits.keepIn(settings());
    startProgram(desk);
    return QApplication::exec();
}

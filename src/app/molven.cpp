#include "screens/screens.h"
#include "ui/desk.h"
#include "ui/icons.h"
#include "ui/printer.h"
#include "ui/style.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCryptographicHash>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QLockFile>
#include <QTranslator>

using namespace molven;

namespace {

/// One lock a workstation and an installation: the data folder is shared, the lock is not.
QString lockPath(const QString& home) {
    const QByteArray name = QCryptographicHash::hash(home.toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
    return QDir::temp().filePath(QStringLiteral("molven-") + QString::fromLatin1(name) + QStringLiteral(".lock"));
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
    parser.addOption({QStringLiteral("home"), QStringLiteral("dossier du programme"), QStringLiteral("DIR"),
                      QApplication::applicationDirPath()});
    parser.process(application);
    const QString home = QDir(parser.value(QStringLiteral("home"))).absolutePath();

    QLockFile lock(lockPath(home));
    lock.setStaleLockTime(0);
    const bool first = lock.tryLock(0);
    Desk desk(home, std::make_unique<MessageBoxPrompt>(), std::make_unique<PreviewPrinter>());
    desk.isAlreadyRunning = [first] { return !first; };
    desk.habits.keepIn(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("MOLVEN"),
                                                   QStringLiteral("fenetres")));
    startProgram(desk);
    return QApplication::exec();
}

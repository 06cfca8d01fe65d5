#include "app/ctl/command.h"

#include "data/engine_version.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/layout.h"
#include "data/presence.h"
#include "dossier/creation.h"
#include "shell/startup.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <memory>

using namespace molven;

namespace molven::ctl {

void say(const QString& line) { QTextStream(stdout) << line << Qt::endl; }
void complain(const QString& line) { QTextStream(stderr) << line << Qt::endl; }

QCommandLineOption dossierOption() {
    return {QStringLiteral("dossier"), QStringLiteral("nom ou dossier de données, s'il y en a plusieurs"),
            QStringLiteral("NOM")};
}

QCommandLineOption serverOption() {
    return {QStringLiteral("serveur"), QStringLiteral("adresse de la base du serveur où mettre les données"),
            QStringLiteral("ADRESSE")};
}

Session sessionOf(const QCommandLineParser& parser, const QString& folder) {
    const QString named = parser.value(QStringLiteral("dossier"));
    const Session session = creation::open(folder, named);
    if (named.isEmpty() && QFile::exists(session.path(DataFile::Societe)) && startup::dossiers(session).size() > 1)
        complain(
            QStringLiteral("plusieurs dossiers : lu le premier, %1 ; les autres par --dossier").arg(session.spe_nom));
    // To the end of the program: nobody compacts the files meanwhile.
    static const Presence working({session.chemin_base, session.chemin_util}, Presence::Kind::Working);
    return session;
}

namespace {

/// What is wrong with a call, French; the toolkit says it in English.
QString wrongCall(const QCommandLineParser& parser) {
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty()) return QStringLiteral("option sans sa valeur, ou avec une de trop");
    return QStringLiteral("option inconnue : ") + unknown.join(QStringLiteral(", "));
}

int runCommand(const Command& command, const QStringList& call) {
    QCommandLineParser parser;
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QString()});
    parser.addOptions(optionsOf(command));
    if (!parser.parse(call)) {
        complain(wrongCall(parser));
        return 2;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        say(helpOf(command).trimmed());
        return 0;
    }
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != command.argumentCount) {
        complain(QStringLiteral("usage : molvenctl %1 %2").arg(command.word, command.arguments));
        return 2;
    }
    try {
        const int code = command.run(parser, arguments);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
        complain(QStringLiteral("Impossible d'écrire le résultat en entier"));
    } catch (const Refusal& refusal) {
        complain(refusal.text.trimmed());
    } catch (const DataError& error) {
        complain(QStringLiteral("%1 (erreur %2)").arg(error.description).arg(error.number));
        for (const EngineError& record : error.records)
            complain(QStringLiteral("  %1 : %2").arg(record.number).arg(record.description));
    }
    return 1;
}

} // namespace
} // namespace molven::ctl

/// Fonts need the toolkit's drawing part, on no screen.
static std::unique_ptr<QCoreApplication> makeApplication(int& argc, char* argv[], bool draws) {
    if (!draws) return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

/// What the toolkit has to say of the machine is English and none of the user's business.
static void tellFaultsOnly(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) ctl::complain(text);
}

/// A large dossier of an earlier version takes its time when it is opened first.
static Progress tellUpgrade(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    return [name, told = -1](int done, int total) mutable {
        if (const int tenth = static_cast<int>(10LL * done / total); tenth != told) {
            ctl::complain(QStringLiteral("mise à jour de %1 : %2 sur %3").arg(name).arg(done).arg(total));
            told = tenth;
        }
        return true;
    };
}

int main(int argc, char* argv[]) {
    qInstallMessageHandler(tellFaultsOnly);
    const QList<ctl::Command>& commands = ctl::words();
    const QString word = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const bool draws = std::any_of(commands.begin(), commands.end(), [&word](const ctl::Command& command) {
        return command.word == word && command.draws;
    });
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv, draws);
    QStringList call = QCoreApplication::arguments();
    for (const ctl::Command& command : commands) {
        if (command.word != word) continue;
        call.removeAt(1);
        ctl::askServerPasswordOnTerminal();
        Layout::showUpgrades(tellUpgrade);
        return ctl::runCommand(command, call);
    }
    if (word == u"--version") {
        ctl::say(QStringLiteral("MOLVEN %1, %2").arg(author::programVersion(), engineVersion()));
        return 0;
    }
    const bool asked = word == u"--help" || word == u"-h";
    for (const QString& line : ctl::usage()) asked ? ctl::say(line) : ctl::complain(line);
    return asked ? 0 : 2;
}

#include "play/engine_memory.h"
#include "play/player.h"

#include "ui/style.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLocale>
#include <QTextStream>

using namespace molven;

int main(int argc, char* argv[]) {
    play::leaveEngineUnwatched();
    play::useScreen();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    style::apply(application);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Joue des scénarios sur un dossier de programme"));
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("home"), QStringLiteral("dossier du programme"), QStringLiteral("DIR")},
         {QStringLiteral("sombre"), QStringLiteral("images dans les couleurs sombres")},
         {QStringLiteral("out"), QStringLiteral("dossier des images et des PDF"), QStringLiteral("DIR")}});
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("scénarios"), QStringLiteral("FILE..."));
    parser.process(application);
    if (!parser.isSet(QStringLiteral("home")) || parser.positionalArguments().isEmpty()) parser.showHelp(2);
    if (parser.isSet(QStringLiteral("sombre"))) style::apply(style::Scheme::Dark);
    const QString out = parser.value(QStringLiteral("out"));
    if (!out.isEmpty()) QDir().mkpath(out);

    play::Player player(QDir(parser.value(QStringLiteral("home"))).absolutePath(),
                        out.isEmpty() ? out : QDir(out).absolutePath());
    bool held = true;
    for (const QString& file : parser.positionalArguments()) {
        const QString failure = player.play(file);
        if (failure.isEmpty()) continue;
        held = false;
        QTextStream(stderr) << failure << Qt::endl;
    }
    return held ? 0 : 1;
}

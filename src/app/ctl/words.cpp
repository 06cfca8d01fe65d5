#include "app/ctl/command.h"

#include "data/journal.h"

namespace molven::ctl {

namespace {

QString spelled(const QCommandLineOption& option) {
    const QString name = QStringLiteral("--") + option.names().last();
    return option.valueName().isEmpty() ? name : name + u' ' + option.valueName();
}

QString explained(const QCommandLineOption& option) {
    const QString preset = option.defaultValues().value(0);
    return preset.isEmpty() ? option.description() : QStringLiteral("%1 (sinon %2)").arg(option.description(), preset);
}

/// A text as `man` takes it.
QString roff(QString text) {
    text.replace(u'\\', QStringLiteral("\\e")).replace(u'-', QStringLiteral("\\-"));
    return text.startsWith(u'.') || text.startsWith(u'\'') ? QStringLiteral("\\&") + text : text;
}

const QString ExitCodes =
    QStringLiteral("0 : fait et sain ; 1 : refusé, ou des défauts trouvés ; 2 : appel mal écrit.");

} // namespace

const QList<Command>& words() {
    static const QList<Command> all{createCommand(),
                                    demoCommand(),
                                    checkCommand(),
                                    traceCommand(),
                                    recallCommand(),
                                    journalCommand(),
                                    companyCommand(),
                                    importCommand(),
                                    exportCommand(),
                                    restoreCommand(),
                                    recountCommand(),
                                    replenishCommand(),
                                    statisticsCommand(),
                                    commissionsCommand(),
                                    transferCommand(),
                                    invoiceCommand(),
                                    receivedInvoiceCommand(),
                                    backupCommand(),
                                    verifyCommand(),
                                    archiveCommand(),
                                    reactivateCommand(),
                                    convertCommand(),
                                    serverCommand(),
                                    migrateCommand(),
                                    guideCommand()};
    return all;
}

QList<QCommandLineOption> optionsOf(const Command& command) {
    Options options;
    command.declare(options);
    return options.all;
}

QStringList usage() {
    QStringList lines{QStringLiteral("usage : molvenctl MOT DIR [options]")};
    for (const Command& command : words())
        lines.append(QStringLiteral("  %1 %2  %3").arg(command.word, -7).arg(command.arguments, -24).arg(command.help));
    return lines;
}

QString helpOf(const Command& command) {
    QStringList lines{QStringLiteral("usage : molvenctl %1 %2 [options]").arg(command.word, command.arguments),
                      command.help,
                      {},
                      QStringLiteral("options :")};
    const auto add = [&lines](const QString& name, const QString& text) {
        lines.append(QStringLiteral("  %1  %2").arg(name, -24).arg(text));
    };
    for (const QCommandLineOption& option : optionsOf(command)) add(spelled(option), explained(option));
    add(QStringLiteral("-h, --help"), QStringLiteral("cette aide"));
    lines += {QString(), QStringLiteral("Répond ") + ExitCodes};
    return lines.join(u'\n') + u'\n';
}

QString manual() {
    QString page = QStringLiteral(".TH MOLVENCTL 1 \"\" \"MOLVEN %1\" \"MOLVEN\"\n"
                                  ".SH NOM\nmolvenctl \\- ce qui se fait d'un dossier MOLVEN sans fenêtre\n"
                                  ".SH SYNOPSIS\n.B molvenctl\n.I MOT DIR\n[options]\n.SH MOTS\n")
                       .arg(author::programVersion());
    for (const Command& command : words()) {
        page += QStringLiteral(".SS \"%1 %2\"\n%3.\n").arg(command.word, command.arguments, roff(command.help));
        for (const QCommandLineOption& option : optionsOf(command))
            page += QStringLiteral(".TP\n.B %1\n%2\n").arg(roff(spelled(option)), roff(explained(option)));
    }
    return page + QStringLiteral(".SH RÉPONSE\n%1\n.SH VOIR AUSSI\n.BR molven (1)\n").arg(roff(ExitCodes));
}

QString completion() {
    QStringList names, cases;
    for (const Command& command : words()) {
        names.append(command.word);
        QStringList options{QStringLiteral("--help")};
        for (const QCommandLineOption& option : optionsOf(command))
            options.append(QStringLiteral("--") + option.names().last());
        cases.append(QStringLiteral("        %1) options=\"%2\" ;;").arg(command.word, options.join(u' ')));
    }
    return QStringLiteral("_molvenctl() {\n"
                          "    local word=\"${COMP_WORDS[COMP_CWORD]}\" options=\n"
                          "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
                          "        COMPREPLY=($(compgen -W \"%1\" -- \"$word\"))\n"
                          "        return\n"
                          "    fi\n"
                          "    case \"${COMP_WORDS[1]}\" in\n%2\n    esac\n"
                          "    case \"$word\" in\n"
                          "        -*) COMPREPLY=($(compgen -W \"$options\" -- \"$word\")) ;;\n"
                          "        *) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;\n"
                          "    esac\n"
                          "}\ncomplete -F _molvenctl molvenctl\n")
        .arg(names.join(u' '), cases.join(u'\n'));
}

} // namespace molven::ctl

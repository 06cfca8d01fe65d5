#include "app/ctl/command.h"

#include "dossier/creation.h"
#include "sales/unit_history.h"

#include <QCommandLineParser>

namespace molven::ctl {

Command traceCommand() {
    return {QStringLiteral("trace"),
            QStringLiteral("raconte l'histoire d'une unité"),
            QStringLiteral("DIR IMMAT"),
            [](QCommandLineParser&) {},
            [](const QCommandLineParser&, const QStringList& arguments) {
                for (const QString& line :
                     unit_history::lines(unit_history::find(creation::open(arguments[0]), arguments[1])))
                    say(line);
                return 0;
            },
            2};
}

} // namespace molven::ctl

#include "app/ctl/command.h"

#include "data/server_login.h"

#include <QTextStream>

#include <termios.h>
#include <unistd.h>

namespace molven::ctl {

namespace {

/// While it lives, what is typed is not shown.
class Hidden {
public:
    Hidden() {
        tcgetattr(STDIN_FILENO, &shown_);
        termios hidden = shown_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~Hidden() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown_); }
    Hidden(const Hidden&) = delete;
    Hidden& operator=(const Hidden&) = delete;

private:
    termios shown_{};
};

} // namespace

void askServerPasswordOnTerminal() {
    if (!isatty(STDIN_FILENO)) return;
    server_login::setAsker([](const QString& place, bool wasWrong) -> std::optional<QString> {
        if (wasWrong) complain(QStringLiteral("Mot de passe refusé."));
        QTextStream(stderr) << QStringLiteral("Mot de passe du serveur pour %1 : ").arg(place) << Qt::flush;
        const Hidden typing;
        const QString password = QTextStream(stdin).readLine();
        complain({});
        return password;
    });
}

} // namespace molven::ctl

#include "screens/shell/server_password.h"

#include "data/server_login.h"

#include <QApplication>
#include <QInputDialog>

namespace molven {

void askServerPasswordInWindow() {
    server_login::setAsker([](const QString& place, bool wasWrong) -> std::optional<QString> {
        const QString text = (wasWrong ? QStringLiteral("Mot de passe refusé.\n") : QString()) +
                             QStringLiteral("Mot de passe du serveur pour %1 :").arg(place);
        bool isGiven = false;
        const QString password =
            QInputDialog::getText(QApplication::activeWindow(), QStringLiteral("Serveur de la base de données"), text,
                                  QLineEdit::Password, {}, &isGiven);
        return isGiven ? std::optional(password) : std::nullopt;
    });
}

} // namespace molven

#include "screens/sales/exchange_mail.h"

#include "stock/mail_addresses.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace molven::exchange_mail {

QString addressOf(const Session& session, const QString& client) {
    Workspace workspace;
    return mail_addresses::find(workspace.open(session.path(DataFile::Mail)), client);
}

void send(const Session& session, const QString& file, const QString& client, const QString& address) {
    Workspace workspace;
    mail_addresses::keep(workspace.open(session.path(DataFile::Mail)), client, address);
    const QString mailer = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (!mailer.isEmpty() && QProcess::startDetached(mailer, {QStringLiteral("--attach"), file, address})) return;
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).path()));
}

} // namespace molven::exchange_mail

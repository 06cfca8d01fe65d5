#pragma once

#include "shell/session.h"

/// Exchange files by mail.
namespace molven::exchange_mail {

/// The address kept for a client; empty when there is none.
QString addressOf(const Session& session, const QString& client);
/// Keeps the address for the client and opens the user's mail program with the file attached, where the system can;
/// else the folder that the file lies in. Throws Refusal for what is no address.
void send(const Session& session, const QString& file, const QString& client, const QString& address);

} // namespace molven::exchange_mail

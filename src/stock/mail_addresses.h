#pragma once

#include "data/database.h"

/// Where the exchange files of each client are sent.
namespace molven::mail_addresses {

/// Empty when none is kept.
QString find(Database mail, const QString& client);
/// Throws Refusal for what is no address.
void keep(Database mail, const QString& client, const QString& address);

} // namespace molven::mail_addresses

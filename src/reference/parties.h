#pragma once

#include "data/database.h"
#include "reference/party_tables.h"

namespace molven::parties {

/// A new client: the code after the last ("000001" in an empty file) and the usual values.
Record blankClient(Database molven);
std::optional<Record> findClient(Database molven, const QString& code);
std::optional<Record> findSupplier(Database molven, const QString& code);

enum class Change { Create, Modify };
/// Throws Refusal with the faulty field; writes in one transaction.
void saveClient(Database molven, Record client, Change change);
void removeClient(Database molven, const QString& code);

} // namespace molven::parties

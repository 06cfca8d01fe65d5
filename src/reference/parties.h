#pragma once

#include "data/database.h"
#include "reference/party_tables.h"

namespace molven::parties {

/// A new client: the code after the last ("000001" in an empty file; the first free one after "999999") and the usual
/// values.
Record blankClient(Database molven);
std::optional<Record> findClient(Database molven, const QString& code);
/// He will be looked for so, in the transaction or the Reading that is open.
void foreseeClient(Database molven, const QString& code);
std::optional<Record> findSupplier(Database molven, const QString& code);

/// Writes the client in one transaction. `before` is the client as the user read it, nothing for a new one. Throws
/// Refusal with the faulty field, DataError RecordChanged when another workstation wrote the client meanwhile.
void saveClient(Database molven, Record client, const std::optional<Record>& before);
/// Keeps the folder of the client's documents alone, whatever else another workstation writes. Throws Refusal.
void setClientFolder(Database molven, const QString& code, const QString& folder);
void removeClient(Database molven, const QString& code);

/// A new supplier, its code found as blankClient() does.
Record blankSupplier(Database molven);
/// As saveClient().
void saveSupplier(Database molven, Record supplier, const std::optional<Record>& before);
/// As setClientFolder().
void setSupplierFolder(Database molven, const QString& code, const QString& folder);
void removeSupplier(Database molven, const QString& code);
/// Makes these files the list of attached documents that a screen shows, in place of what was listed.
void listDocuments(Database documents, const QStringList& names);

} // namespace molven::parties

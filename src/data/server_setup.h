#pragma once

#include <QStringList>

namespace molven::server_setup {

/// Makes the database that an address names, with what the program's tables need there and two roles that nobody logs
/// in as: BASE_proprietaire, which owns the database, and BASE_utilisateurs, whose members read and write records and
/// cannot change tables. What is there already stays. To be asked by an administrator of the server; tables made later
/// by the same administrator are open to the users' role. Answers what was done, one French line each. Throws
/// DataError, and Refusal for an address without a database or a database that the program cannot use.
QStringList prepare(const QString& address);

/// What keeps the users' role of a database from its work, one French line each; empty when it is as prepare() makes
/// it.
QStringList faults(const QString& address);

} // namespace molven::server_setup

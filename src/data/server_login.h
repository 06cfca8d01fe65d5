#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The password of an account on a server. No file of ours keeps it: it is asked of the user when the server wants one
/// that the account's own files (.pgpass, services) do not give, and known until the program ends.
namespace molven::server_login {

/// Asks the user; `place` says which base, server and account. Nothing when the user gives up.
using Asker = std::function<std::optional<QString>(const QString& place, bool wasWrong)>;

/// Who asks, in the thread that says so. Without one nothing is asked.
void setAsker(Asker asker);

/// What is known for an address; empty when nothing is.
QString known(const QString& address);
/// Asks for it; false when there is nobody to ask, or nothing was given.
bool ask(const QString& address, const QString& place, bool wasWrong);
/// It did not fit.
void forget(const QString& address);

} // namespace molven::server_login

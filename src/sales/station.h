#pragma once

#include <QString>

namespace molven::station {

/// The running program: "workstation/user/process".
QString current();
/// Whether that program was this user's, on this workstation, and runs no more. What it left unfinished is the user's
/// to take up; what a colleague or another program of the same user is typing is not.
bool isGone(const QString& program);

} // namespace molven::station

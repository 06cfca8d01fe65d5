#pragma once

#include "data/database.h"

#include <QStringList>

/// The postal address of the company whose data a dossier holds.
namespace molven::company_address {

QStringList lines(Database molven);
/// Replaces it. Throws Refusal for more than four lines, or a line of more than 40 characters.
void set(Database molven, const QStringList& lines);

} // namespace molven::company_address

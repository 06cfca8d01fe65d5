#pragma once

#include "data/database.h"
#include "shell/session.h"

/// A family of articles under another code.
namespace molven::family_renaming {

/// Gives a family of articles, or of ancillary sets, another code, in every file of the dossier: the list of families,
/// the articles and sets of the family, its sub-families, and the discounts and commission rates that bear the code
/// with the categories of the articles that they apply to. One transaction; answers how many articles. Throws Refusal
/// for a code that is empty or too long, an unknown one, and a new one that is in use: two families would become one.
qint64 rename(const Session& session, const QString& code, const QString& newCode);

/// Articles of that family, of whichever list.
qint64 count(Database molven, const QString& code);
/// Label of the family, empty when no list has it.
QString label(Database molven, const QString& code);

} // namespace molven::family_renaming

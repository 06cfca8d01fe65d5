#pragma once

#include "reference/code_tables.h"
#include "stock/stock_tables.h"

/// Types of ancillary sets and what a set of each is made of.
namespace molven::set_types {

/// The file of the types, as a code table.
const CodeTable& table();

/// The files that a type's codes lie in, of one workspace.
struct Files {
    Database molven, compta, ancillaire;
};

/// The article that a code of a type names, one of the kind "X"; nothing for any other code.
std::optional<Record> articleOf(Database molven, const QString& code);
/// The condition on the VAT codes that a type may have.
Criterion ofArticles();
/// Copies to a new type what its article says of it.
void copyArticle(const Record& article, Record& type);

/// Writes a type; `before` is the type as its user read it, nothing for a new one. Throws Refusal with its first
/// fault, DataError RecordChanged when another workstation wrote it meanwhile.
void save(const Files& files, const Record& type, const std::optional<Record>& before);
/// Deletes a type with its composition; inside the caller's transaction, which looks for the sets made of it.
void remove(Database ancillaire, const Record& type);

/// The condition on the components of a type, without the line that heads them.
Criterion componentsOf(const QString& type);
/// How many units a whole set holds, as the heading line "000" keeps it.
qint64 unitsOf(Database ancillaire, const QString& type);

/// Most units of a set: what one transfer note carries.
constexpr int MostUnits = 996;

/// Adds a component, or changes the one read as `before`. Throws Refusal for an unknown type or article, one that is
/// not kept by units or is in the composition already, a faulty quantity, and a set of too many units.
void saveComponent(const Files& files, const QString& type, const QString& article, const QString& quantity,
                   const std::optional<Record>& before);
/// Takes a component, as its user read it, out of the composition.
void removeComponent(Database ancillaire, const Record& asRead);

} // namespace molven::set_types

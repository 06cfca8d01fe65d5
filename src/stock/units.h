#pragma once

#include "shell/company_rules.h"
#include "stock/immatriculation.h"

#include <optional>

namespace molven {

/// States of a unit, `tes_vte`.
namespace state {
inline const QString InStock = QStringLiteral("N");
inline const QString Delivered = QStringLiteral("L");
inline const QString Sold = QStringLiteral("O");
inline const QString InSet = QStringLiteral("A");
} // namespace state

/// The depot of units returned to their supplier.
inline const QString ReturnedDepot = QStringLiteral("XXX");
/// What `nbl_dep` holds when a credit note took the unit back.
inline const QString TakenBack = QStringLiteral("AVOIR");

namespace units {

std::optional<Record> find(Database molven, const Immatriculation& immatriculation);

/// A unit's present situation in two lines of words; the second may be empty.
struct Situation {
    QString place;
    QString document;
};
Situation situation(const Record& unit, const CompanyRules& rules);
/// "Ce produit est conforme" and its kin, with the cause and its label.
QString conformityText(Database molven, const Record& unit);
/// "En stock", "Livré", "Vendu" or "En ancillaire".
QString stateName(const QString& unitState);
/// "Conforme", "Retouché", "Dérogé" or "Rebuté".
QString conformityName(const QString& code);

/// Deletes a unit still in stock and lowers its article's quantity. Throws Refusal otherwise.
void remove(Database molven, const Immatriculation& immatriculation);
/// Records patient, hospital and date of implantation of a sold unit. Throws Refusal otherwise.
void implant(Database molven, const Immatriculation& immatriculation, const QString& patient, const QString& client,
             const QString& date);

/// Changes the conformity of a unit ("O" conform, "X" reworked, "Y" derogated, "Z" scrapped) and keeps the change in
/// its history. Throws Refusal for an unknown unit, code or cause.
void changeConformity(Database molven, const Immatriculation& immatriculation, const QString& code,
                      const QString& cause);
/// The history record of a unit's present conformity, dated today.
Record conformityChange(Database molven, const Record& unit);
/// Rewrites the receipt data of a unit still in stock; `before` is the unit as the user read it. Throws Refusal when it
/// has left, DataError RecordChanged when another workstation wrote it meanwhile.
void change(Database molven, const Record& unit, const Record& before);
/// Throws Refusal "cette immatriculation n'est pas modifiable" unless the unit is in stock.
void requireChangeable(const Record& unit);

/// Units of an article that are not invoiced, as the article's quantity counts them.
qint64 countInStock(Database molven, const QString& reference);

/// Copies each unit's depot family from the depot list; answers the number of units changed.
qint64 updateDepotFamilies(Database molven, Database units);

} // namespace units
} // namespace molven

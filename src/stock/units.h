#pragma once

#include "shell/company_rules.h"
#include "shell/session.h"
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

/// Basis of a unit's price, `pro_tar`; any other is with VAT.
namespace basis {
inline const QString WithoutVat = QStringLiteral("H");
}

/// The depot of units returned to their supplier.
inline const QString ReturnedDepot = QStringLiteral("XXX");
/// What `nbl_dep` holds when a credit note took the unit back.
inline const QString TakenBack = QStringLiteral("AVOIR");

namespace units {

std::optional<Record> find(Database molven, const Immatriculation& immatriculation);
/// They will be looked for with find(), in the transaction or the Reading that is open.
void foresee(Database molven, const QStringList& immatriculations);

/// "Immatriculation 26030001, CFG001 COMPOSANT FEMORAL": which unit it is, in words.
QString title(const Record& unit);

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

/// A unit is good until the last day of its month of expiry, and expires soon in the month before that day.
enum class Expiry { None, Good, Soon, Past };
Expiry expiryOf(const Record& unit);

/// Deletes a unit still in stock with its conformity history, and lowers its article's quantity. Throws Refusal for
/// another. What papers name a unit is known above: a user's deletion goes through `unit_removal`.
void remove(Database molven, const Immatriculation& immatriculation);

/// Who bears a unit, where and since when ("dd/mm/yyyy").
struct Implantation {
    QString patient;
    QString client; ///< the hospital's code
    QString date;
    bool operator==(const Implantation&) const = default;
};
Implantation implantationOf(const Record& unit);
/// "DUPONT, client 000006, le 07/03/2026", or "aucun" without patient.
QString patientText(const Implantation& implantation);
/// Throws Refusal "Impossible..cette immatriculation n'est pas vendue" unless the unit is sold.
void requireSold(const Record& unit);
/// Records the implantation of a sold unit; `before` is the unit as the user read it. Throws Refusal for a unit not
/// sold, a faulty date or hospital, and when another workstation entered an implantation meanwhile.
void implant(Database molven, const Record& before, const Implantation& implantation);

/// A conformity code ("O" conform, "X" reworked, "Y" derogated, "Z" scrapped) and its cause, of the list of that
/// letter.
struct Conformity {
    QString code;
    QString cause;
};
bool needsCause(const QString& conformity);
/// The cause in the form that its list keeps, "1" as "01"; none where the code needs none.
QString causeOf(Database molven, const Conformity& conformity);
/// Throws Refusal on one of the two fields for an unknown code, or a cause that is missing or unknown.
void checkConformity(Database molven, const Conformity& conformity, const QString& codeField,
                     const QString& causeField);
/// Changes the conformity of a unit, as its user read it, and keeps the change in its history. Throws Refusal for an
/// unknown unit, code or cause, and when another workstation changed the conformity meanwhile.
void changeConformity(Database molven, const Record& asRead, const QString& code, const QString& cause);
/// The history record of a unit's present conformity, dated today.
Record conformityChange(Database molven, const Record& unit);
/// Rewrites the receipt data of a unit still in stock; `before` is the unit as the user read it. Throws Refusal when it
/// has left, DataError RecordChanged when another workstation wrote it meanwhile.
void change(Database molven, const Record& unit, const Record& before);
/// Throws Refusal "cette immatriculation n'est pas modifiable" unless the unit is in stock.
void requireChangeable(const Record& unit);

/// What a unit's record holds of its article: label, reimbursement codes, approval, sale price and its basis.
QList<Assignment> fromArticle(const Record& article);
/// What a unit's record holds of the depot it lies in: the depot, and its family where the company has families.
QList<Assignment> placedIn(Database molven, const CompanyRules& rules, const QString& depot);

/// Units of an article that are not invoiced, as a recount of the article counts them.
qint64 countInStock(Database molven, const QString& reference);
/// The condition on units in a set that is out at a client: they left the article's quantity when the set left, and
/// come back to it with the set.
Criterion awayInSet();
/// Gives an article the quantity that is not invoiced and not out in a set.
void putPresentStock(Database molven, const QString& reference);

/// Copies each unit's depot family from the depot list, archived units included, in one transaction; answers the number
/// of units changed.
qint64 updateDepotFamilies(const Session& session);

} // namespace units
} // namespace molven

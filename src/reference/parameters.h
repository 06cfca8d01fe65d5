#pragma once

#include "data/database.h"
#include "reference/parameter_tables.h"

#include <QDate>
#include <QList>

namespace molven {

/// One of the lists kept in the parameter table.
struct ParameterList {
    QString mode;    ///< word set by the menu
    QString letter;  ///< list code, `cod_par`
    QString caption; ///< "les familles client"
};

/// Letters of the lists that other rules look codes up in.
namespace list {
inline const QString ClientFamily = QStringLiteral("C");
inline const QString ArticleFamily = QStringLiteral("A");
inline const QString SupplierFamily = QStringLiteral("F");
inline const QString Representative = QStringLiteral("R");
inline const QString Depot = QStringLiteral("D");
inline const QString Dispatch = QStringLiteral("E");
inline const QString Surgeon = QStringLiteral("H");
inline const QString Reworked = QStringLiteral("X");
inline const QString Derogated = QStringLiteral("Y");
inline const QString Scrapped = QStringLiteral("Z");
inline const QString DepotFamily = QStringLiteral("B");
inline const QString ArticleGroup = QStringLiteral("G");
inline const QString SubFamily = QStringLiteral("S");
inline const QString AncillaryFamily = QStringLiteral("W");
} // namespace list

inline const QString MainDepot = QStringLiteral("001");
/// Where units lie while they sit in an ancillary set at the main depot.
inline const QString SetDepot = QStringLiteral("A01");

namespace parameters {

const QList<ParameterList>& lists();
/// The list of a mode word, or null.
const ParameterList* listOfMode(const QString& mode);

/// Condition on the entries of one list.
Criterion ofList(const QString& letter);
std::optional<Record> find(Database molven, const QString& letter, const QString& code);
/// The codes of some lists, each behind its letter, will be looked for so, in the transaction or the Reading that is
/// open.
void foresee(Database molven, const QList<std::pair<QString, QString>>& codes);
/// Label of an entry, empty when the list has no such code.
QString label(Database molven, const QString& letter, const QString& code);
/// Depot family of a depot, empty when the depot is unknown.
QString depotFamily(Database molven, const QString& depot);

std::optional<Record> currency(Database molven, const QString& key);
/// Key of the company's currency: the one its own record names when it is known, else the euro.
QString companyCurrency(Database molven, const QString& named);
/// Rate in percent of a VAT code, 0 when unknown.
Decimal vatRate(Database molven, const QString& vatCode);
std::optional<Record> paymentMode(Database molven, const QString& code);
/// They will be asked for, as foresee() has it.
void foreseeCurrency(Database molven, const QString& key);
void foreseeVatRates(Database molven, const QStringList& vatCodes);
void foreseePaymentMode(Database molven, const QString& code);
/// Due date "dd/mm/yyyy": document date, plus the mode's days, then the end of that month, then its day.
QString dueDate(const Record& paymentMode, const QDate& documentDate);

} // namespace parameters
} // namespace molven

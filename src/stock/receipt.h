#pragma once

#include "data/progress.h"
#include "shell/company_rules.h"
#include "stock/immatriculation.h"

#include <functional>

namespace molven {

/// A receipt of units of one article, as entered. Dates are "dd/mm/yyyy", sterilisation and expiry "mm/yyyy".
struct Receipt {
    QString reference;
    QString supplier;    ///< code, "000000"
    QString firstNumber; ///< immatriculation of the first unit; empty for the next of the month
    QString orderNumber, orderDate;
    QString deliveryNumber, deliveryDate;
    QString plannedDate;
    QString quantity;
    QString purchasePrice; ///< company currency, comma or point
    QString depot = QStringLiteral("001");
    QString lot;
    QString certificate1, certificate2, registerEntry, pieces, manufacturingOrder;
    QString conformity = QStringLiteral("O"), cause;
    QString sterilisationBatch, sterilisationDate, expiryDate, sterilisationIndex;
    QStringList supplierSerials; ///< none, or one a unit in the order of their numbers
    QString supplierReference;
    QString scannedEan, eanCompanion;
    QString operatorWord; ///< who receives, empty when nobody logged in
    QString currency = QStringLiteral("EUR");
};

namespace receipts {

/// Units just created, first and last of the run.
struct Created {
    QString first;
    QString last;
};

/// The article of a receipt. Throws Refusal when it is unknown or not followed by unit.
Record followedArticle(Database molven, const QString& reference);
/// What units received do to their article: quantity, average price weighted by quantity, last purchase price.
void addToArticle(Database molven, const CompanyRules& rules, const QString& reference, const Decimal& quantity,
                  const Decimal& price);
/// Creates the units and updates the article's quantity, average and last purchase price, in one transaction. Throws
/// Refusal with the first fault of the receipt, in the order of the screen.
Created receive(UnitFiles files, const CompanyRules& rules, const Receipt& receipt, const Progress& progress = {});
/// What receipts of these articles have for themselves.
Locks receiptLocks(const QStringList& references);
inline const QString ReceiptDeed = QStringLiteral("Réception");
/// Rewrites the receipt of one unit still in stock, under the same checks; its article, receipt date, number and
/// conformity stay. `before` is the unit as the user read it. Throws Refusal, and DataError RecordChanged when another
/// workstation wrote the unit meanwhile.
void change(UnitFiles files, const CompanyRules& rules, const Receipt& receipt, const Record& before);

} // namespace receipts
} // namespace molven

#pragma once

#include "data/database.h"

namespace molven::pricing {

/// What an article sold to a client presets on a line.
struct Preset {
    QStringList designation; ///< two labels, three for some companies
    QString vatCode;
    bool withoutVat = true; ///< price basis
    Decimal price;          ///< unit price before discount, on that basis
    Decimal discount;       ///< percent
    Decimal purchasePrice;
    QString reimbursement;      ///< TIPS or LPP code; the first of several
    QStringList reimbursements; ///< the LPP codes to choose from when the article has several
    QString approval;           ///< approval number, consignment documents only
    /// "Ce prix de vente est HT" or "... TTC".
    QString message() const;
};

/// Approval number of an article that needs none.
inline const QString NotSubject = QStringLiteral("NON SOUMIS");

/// The LPP codes of an article that has several; empty for another.
QStringList reimbursements(Database molven, const Record& article);

/// The LPP code of an article, whatever its category; the first of several.
QString lppOf(Database molven, const Record& article);

/// Presets from the article, overridden by the client's discount table, then by the client's own tariff.
Preset preset(Database molven, const Record& article, const Record& client, bool threeLabels, bool consignment);

/// Presets of these articles will be asked for, in the transaction or the Reading that is open.
void foresee(Database molven, const QList<Record>& articles, const Record& client);

/// Net unit price: price less the discount in percent, to the cent.
Decimal net(const Decimal& price, const Decimal& discount);

/// Totals of one line, to the cent.
struct LineTotal {
    Decimal ht;
    Decimal ttc;
};
/// Quantity x net price is the total on the price's own basis; the other comes by the VAT rate in percent.
LineTotal lineTotal(const Decimal& quantity, const Decimal& net, bool withoutVat, const Decimal& vatRate);

} // namespace molven::pricing

#pragma once

#include "stock/receipt.h"

namespace molven {

/// A unit of a delivery as its supplier's code tells it, and what it was bought for.
struct DeliveredUnit {
    QString reference;
    QString designation;
    QString lot;
    QString expiry; ///< "mm/yyyy"
    QString serial;
    QString supplierReference;
    QString price; ///< company currency; empty until it is known
    QString ean;
};

namespace deliveries {

/// The unit of a supplier's code, at the article's last purchase price. Throws Refusal for a text that is no such code,
/// an unknown article, one not followed by unit, and a serial that is among those already read.
DeliveredUnit read(Database molven, const QString& scanned, const QList<DeliveredUnit>& before);

/// Receives the units, of whatever articles, in one transaction: neighbours of the same article, lot, expiry and price
/// get one run of numbers. `delivery` gives what they have in common: supplier, order, delivery, depot, operator,
/// currency. Throws Refusal with the first fault, behind the unit it is about; then nothing is received.
QList<receipts::Created> receive(UnitFiles files, const CompanyRules& rules, const Receipt& delivery,
                                 const QList<DeliveredUnit>& units, const Progress& progress = {});

} // namespace deliveries
} // namespace molven

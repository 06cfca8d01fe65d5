#pragma once

#include "data/progress.h"
#include "shell/session.h"
#include "stock/immatriculation.h"

/// Units of an exchange file become units of this stock.
namespace molven::unit_integration {

struct Order {
    QString supplier;                ///< code, "000000"
    QString orderDate, deliveryDate; ///< "dd/mm/yyyy"; the units are numbered in the month of delivery
};

struct Outcome {
    QStringList created;   ///< immatriculations given
    QList<Record> unknown; ///< received units whose reference names no followed article; they can be taken later
    qsizetype present = 0; ///< received units that were taken before
};

/// The order with its supplier's code in full. Throws Refusal "Code fournisseur inconnu", "date invalide".
Order checked(UnitFiles files, Order order);

/// How many of the units received stand here as delivered by another supplier: the same file under a wrong code, most
/// likely.
qsizetype fromAnotherSupplier(UnitFiles files, const QList<Record>& received, const QString& supplier);

/// Creates the units received that are not here yet, all in one transaction with what they do to their articles. Throws
/// Refusal "Code fournisseur inconnu", "date invalide", when the month is full, and when every unit was taken before.
Outcome integrate(const Session& session, UnitFiles files, const QList<Record>& received, const Order& order,
                  const Progress& progress);

} // namespace molven::unit_integration

#pragma once

#include "shell/session.h"
#include "stock/depot_counts.h"

/// The documents that settle what a closed count found.
namespace molven::count_documents {

/// One document to be written.
struct Offer {
    enum class Kind {
        Delivery, ///< missing units were used in the hospital
        Transfer, ///< unexpected units: the books follow
        Return    ///< units that expire go home
    };
    Kind kind;
    QString from, to; ///< depots; a delivery has no `to`
    QString client;
    QStringList units;
};

/// What can settle a row of a closed count. Throws Refusal, saying why, for a row that nothing can or that is settled.
Offer::Kind kindOf(const DepotCount& count, const Record& row);
/// Whether something can.
bool isSettleable(const DepotCount& count, const Record& row);

/// The documents for these rows, each with as many units as one holds. Throws Refusal for a row that no document can
/// settle, or a depot without client.
QList<Offer> offers(Database molven, const DepotCount& count, const QList<Record>& rows);
/// Throws Refusal for a delivery without patient.
void requirePatient(const Offer& offer, const QString& patient);
/// Writes one, marks its units as settled, and answers its number; one transaction. Throws Refusal when a unit was
/// settled or moved since, or when a delivery has no patient.
QString write(const Session& session, const Record& count, const Offer& offer, const QString& patient);

} // namespace molven::count_documents

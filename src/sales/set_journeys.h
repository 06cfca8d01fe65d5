#pragma once

#include "sales/sales_book.h"
#include "stock/ancillary_sets.h"

/// Ancillary sets on their way: a transfer note sends a whole set to a client; what comes back is noted on another,
/// what was used goes on a delivery note.
namespace molven::set_journeys {

/// What the rules write: the transfer notes, and the sets in the same workspace.
struct Files {
    SalesBook& notes;
    Database ancillaire;
    ancillary_sets::Files sets() const { return {notes.molven, ancillaire, notes.rules()}; }
};

/// Throws Refusal unless the set lies at the main depot and is complete.
void requireSendable(Files& files, const QString& serial);
/// Sends a set to a client, by a carrier of the list "E" or none; answers the header of its transfer note. Throws
/// Refusal with the first fault.
Record send(Files& files, const QString& serial, const QString& client, const QString& carrier);

/// Throws Refusal unless the set lies at a client.
void requireAway(const Record& set);
/// The unit of a set that a scanned text names: our number, the supplier's serial or his GS1 code. Throws Refusal when
/// none does, or several do.
QString unitScanned(Files& files, const QString& serial, const QString& scanned);

/// A set that comes back.
struct Return {
    Record set;       ///< its line "000" as its user read it
    QStringList back; ///< units that came back; the others were used
    QString patient;  ///< of the units used
    QString surgeon;  ///< a code of the list "H", or none
};
/// Numbers of what a return wrote; empty where nothing was to write.
struct Returned {
    QString transferNote; ///< of the units that came back
    QString deliveryNote; ///< of those used
};
/// Brings a set back to the main depot, short of the units used, which go on a delivery note to its client: one
/// transaction. Throws Refusal when the set or its units changed since they were read, when units were used and no
/// patient is given, and with the first fault of the delivery note.
Returned takeBack(Files& files, const Return& wanted);

/// "Retour Ancillaire N° 00000001": how the note of a return is labelled.
QString returnLabel(const QString& serial);

} // namespace molven::set_journeys

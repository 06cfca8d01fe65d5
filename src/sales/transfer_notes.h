#pragma once

#include "sales/sales_book.h"

/// What is the transfer notes' own among the documents: they move units between two depots, without sale, and a note
/// can be renewed, its units going on to a further depot.
namespace molven::transfer_notes {

/// What the notes of the sets bear in the place of the hospital's voucher: "Ancillaire", "Retour Ancillaire N° ...".
inline const QString SetLabel = QStringLiteral("Ancillaire");
/// Whether a note sends an ancillary set to its client, or brings it back.
bool isOfSet(const Record& header);
/// Throws Refusal with the first fault of a new header. The notes of the sets are made with the sets alone.
void check(SalesBook& book, const Record& header);
/// Puts into a new header what its date and its state imply.
void complete(Record& header);

/// Writes a new note with these units (immatriculations), in one transaction; answers its header. Throws Refusal with
/// the first fault of the header, or the unit that may not leave.
Record write(SalesBook& book, const Record& header, const QStringList& units,
             const std::optional<Record>& deliveryAddress = {});

/// Number of the note on which this one was renewed; empty when it was not.
QString renewedOn(const Record& note);
/// Throws Refusal "Ce Bon a été transféré sur le Bon N° : " when the note was renewed already, or when no unit of it is
/// left where it put them.
void requireRenewable(SalesBook& book, const Record& note);
/// The lines of a note whose units still lie in its depot of arrival.
QList<Record> remaining(SalesBook& book, const Record& note);
/// The header of a note that takes the units of this one on for a client: from its depot of arrival to the main depot,
/// or to the depot of another client.
Record renewal(SalesBook& book, const Record& note, const QString& client);
/// Writes that header with these units, and the new number on the old note, in one transaction; answers the new header.
/// `note` is the old one as the user saw it.
Record renew(SalesBook& book, const Record& header, const QStringList& units,
             const std::optional<Record>& deliveryAddress, const Record& note);
/// The next note carries on the one of that number, whose units it takes further; inside the caller's transaction.
void carryOn(SalesBook& book, const QString& number, const QString& next);
/// A note that is dropped renews none; inside the caller's transaction.
void release(SalesBook& book, const Record& dropped);

} // namespace molven::transfer_notes

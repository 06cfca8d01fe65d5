#pragma once

#include "sales/document_tables.h"
#include "shell/session.h"
#include "stock/immatriculation.h"

namespace molven {

/// Everything kept of one unit in one pair of files, current or archived.
struct UnitTrail {
    QList<Record> unit;         ///< the unit itself, none or one
    QList<Record> transfers;    ///< lines of transfer notes, by number
    QList<Record> deliveries;   ///< lines of delivery notes
    QList<Record> invoices;     ///< lines of invoices and credit notes
    QList<Record> consignments; ///< lines of consignment notes
};

/// Where a unit went: its record and its lines in the current and the archived files.
struct UnitHistory {
    QString immatriculation;
    QString label; ///< article label
    UnitTrail current;
    UnitTrail archived;
    QList<Record> steps; ///< its road in time, of strsuivi
};

namespace unit_history {

/// Which file the unit itself is read from; its documents are the same.
enum class Source { Real, Virtual };
/// Throws Refusal "Immatriculation inconnue" when neither file knows the unit. A virtual unit is always of this
/// century.
UnitHistory find(const Session& session, const QString& typed, Source source = Source::Real);

/// The history as lines of text, for an administrator or a printed page.
QStringList lines(const UnitHistory& history);

} // namespace unit_history
} // namespace molven

#pragma once

#include "data/locks.h"
#include "sales/lines.h"

/// What the rules of documents have for themselves, so that two workstations write two documents at a time.
namespace molven::document_locks {

/// A new document: the series of its numbers and the delivery address kept for its client.
Locks ofNew(SalesBook& book, const Record& header);
/// A document that stands.
QString document(SalesBook& book, const Record& header);
QString document(const Database& file, const DocumentHeaders& table, const Record& header);
/// A document that stands, with the units and the articles that these of its lines move.
Locks ofStanding(SalesBook& book, const Record& header, const QList<Record>& lines);
/// A new document with these units.
Locks ofNewWith(SalesBook& book, const Record& header, const QStringList& units);
/// New lines of a document, with the units and the articles that they move.
Locks ofLines(SalesBook& book, const Record& header, const QList<document_lines::Draft>& drafts);
/// The units of these lines of a kind, and the articles of those that are sold.
Locks ofUnits(const DocumentKind& kind, const QList<Record>& lines);

} // namespace molven::document_locks

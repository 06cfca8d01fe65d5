#pragma once

#include "data/archive.h"
#include "sales/document_kind.h"

/// Closed documents in the history file, and back.
namespace molven::document_archive {

/// Documents of one year between two numbers.
struct Range {
    QString year, first, last;
};

/// The tables of a kind of document, as they are moved.
archive::Subject subject(const DocumentKind& kind);
/// Documents that may be moved: delivery notes leave for history once they were invoiced, whatever else is asked.
Criterion eligible(const DocumentKind& kind, archive::Direction direction);
/// Eligible documents of a range. Throws Refusal for a year or numbers that are none.
Criterion within(const DocumentKind& kind, archive::Direction direction, const Range& range);

} // namespace molven::document_archive

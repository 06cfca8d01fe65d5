#pragma once

#include "sales/document_kind.h"
#include "ui/record_model.h"
#include "ui/record_panel.h"

namespace molven {

/// What the entry screen of one kind of document is put together from. Another kind is another description.
struct DocumentLayout {
    /// What not every kind has.
    enum class Part { Deletion, LineChange, Scans, Integration, Footer, Printing, Renewal, Delivery };

    QString screen;               ///< name of the form
    QList<Part> parts;            ///< those it has
    QList<FieldBox> header;       ///< the number first; a new document opens all that are not read-only
    QList<const Field*> required; ///< what of it must be filled
    QString depotWords = {};      ///< stands before the depot beside its box; empty for the depot's label
    QList<FieldBox> line;         ///< boxes in which a line is entered
    QList<GridColumn> lines;      ///< of the document
    QList<GridColumn> documents;  ///< of the list of a client's documents
    QString askFirstUnit = {};    ///< said when a range is wanted without its first unit
    QString confirmRange = {};    ///< question before a range is taken; %1 is how many
    QString lineMissing = QStringLiteral("N° ligne obligatoire"); ///< said when no line is chosen

    bool has(Part part) const { return parts.contains(part); }
};

DocumentLayout layoutOf(const DocumentKind& kind);

} // namespace molven

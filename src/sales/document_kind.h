#pragma once

#include "sales/changed_elsewhere.h"
#include "sales/document_tables.h"

#include <QList>

namespace molven {

/// What one kind of sales document is: its tables, its words, its effect on a unit.
struct DocumentKind {
    QString mode; ///< "LIV", "CSG", "FAC", "AVO", "AVG", "BTR"
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    const Text& depot;     ///< of the header: where the document leaves its units
    QString title;         ///< of the screen
    QString label;         ///< on the header while entering
    QString shownLabel;    ///< once a document is displayed
    QString listTitle;     ///< of the list of a client's documents
    QString noneListed;    ///< said when a client has none
    QString unitState;     ///< what a unit becomes
    bool isCredit = false; ///< takes units back
    bool isConsignment = false;
    bool isDeletable = false;
    bool isPriced = true;     ///< its lines have prices, its headers totals
    QList<WatchedField> open; ///< what of its header may still be changed
    QString openWords;        ///< the same, as the user is told
    /// What it is and which screen has it, for a number typed in the other screen of its series.
    QString whereabouts = {};

    bool isDelivery() const { return mode == u"LIV"; }
    bool isInvoice() const { return mode == u"FAC"; }
    /// Moves units between depots, without sale.
    bool isTransfer() const { return mode == u"BTR"; }
    bool isInvoicing() const { return isInvoice() || isCredit; }
};

const QList<DocumentKind>& documentKinds();
/// The kind of a mode word. Throws Refusal for an unknown one.
const DocumentKind& documentKind(const QString& mode);

} // namespace molven

#pragma once

#include "sales/document_tables.h"

#include <QList>

namespace molven {

/// What one kind of sales document is: its tables, its words, its effect on a unit.
struct DocumentKind {
    QString mode; ///< "LIV", "CSG", "FAC", "AVO", "AVG"
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    QString title;      ///< of the screen
    QString label;      ///< on the header while entering
    QString shownLabel; ///< once a document is displayed
    QString listTitle;  ///< of the list of a client's documents
    QString unitState;  ///< what a unit becomes
    bool isCredit;      ///< takes units back
    bool isConsignment;
    bool isDeletable;
    QString whereabouts; ///< what it is and which screen has it, for a number typed in the other screen of its series

    bool isDelivery() const { return mode == u"LIV"; }
    bool isInvoice() const { return mode == u"FAC"; }
};

const QList<DocumentKind>& documentKinds();
/// The kind of a mode word. Throws Refusal for an unknown one.
const DocumentKind& documentKind(const QString& mode);

} // namespace molven

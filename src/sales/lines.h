#pragma once

#include "sales/pricing.h"
#include "sales/sales_book.h"

namespace molven::document_lines {

/// A line being entered: the record to write, and what the screen tells the user about it.
struct Draft {
    explicit Draft(const DocumentLines& table) : line(table) {}

    Record line;
    bool tracked = false;       ///< needs a unit
    bool isText = false;        ///< designation only
    bool withoutVat = true;     ///< price basis
    QStringList reimbursements; ///< the LPP codes to choose `fac_tip` from when the article has several
    QString priceMessage;       ///< "Ce prix de vente est HT" or TTC; empty for a text and on a transfer
};

/// A line preset from an article for the document's client. Throws Refusal for an unknown article.
Draft preset(SalesBook& book, const Record& header, const QString& reference);
/// A line that is a designation only: it counts nothing.
bool isText(const DocumentLines& table, const Record& line);
/// Puts a checked unit on the line: identification, sterilisation, type, supplier's serial and reference.
void setUnit(SalesBook& book, Draft& draft, const Record& unit);
/// The line of a checked unit, preset from its article.
Draft ofUnit(SalesBook& book, const Record& header, const Record& unit);
/// The same of several, whose articles and prices are read together.
QList<Draft> ofUnits(SalesBook& book, const Record& header, const QList<Record>& units);
/// The codes that a line of the article may carry when it has several; empty otherwise.
QStringList reimbursementsOf(SalesBook& book, const QString& reference);
/// A warning when an untracked article's stock does not cover the quantity; empty otherwise.
QString stockWarning(SalesBook& book, const Draft& draft);

// `header` and the lines `asRead` and `before` are the records as the user saw them: each function throws
// ChangedElsewhere when another workstation changed that line meanwhile, or deleted the document.

/// Adds lines, with their effect on units and stock and the document's totals, in one transaction. Each unit is checked
/// again under the lock. `from` numbers the first one, 0 the one after the last. Throws Refusal when the document is
/// transferred or full, a number is taken, or a line is not complete.
void add(SalesBook& book, const Record& header, const QList<Draft>& drafts, int from = 0);
/// The same for a document that the caller's transaction has just made, so that nobody else knows it.
void addToNew(SalesBook& book, const Record& made, const QList<Draft>& drafts);
/// Writes lines of checked units without moving them: the caller does, in the same transaction.
void record(SalesBook& book, const Record& header, const QList<Draft>& drafts);
/// Inserts one line before an existing one, which is pushed down with its followers. Texts are only added.
void insert(SalesBook& book, const Record& header, const Draft& draft, const Record& before);
/// Rewrites price, discount, reimbursement code and, for an untracked article, quantity. The quantity is positive, on
/// credit notes too.
void change(SalesBook& book, const Record& header, const Record& line, const Record& asRead);
/// Deletes a line and undoes its effect; with the last line of a delivery note, the note leaves the invoice.
void remove(SalesBook& book, const Record& header, const Record& asRead);
/// Takes a quantity out of the stock of an article kept by quantity, and out of no other's; a negative one comes back.
void takeFromStock(SalesBook& book, const QString& reference, const Decimal& quantity);
/// Undoes a line's effect on its unit, or on the stock of its article; inside the caller's transaction.
void undo(SalesBook& book, const Record& header, const Record& line);

/// The line's record without its document, as copied from one document to another.
Record copyOf(const Record& line, const DocumentLines& target);

} // namespace molven::document_lines

#pragma once

#include "printing/paper_table.h"

#include <QStringList>

namespace molven {

/// A letter with a table and a slip to send back, ready to print.
struct Letter {
    QString sender;
    QStringList senderAddress;
    QString footer;
    QStringList address; ///< of the receiver
    QString placeAndDate;
    QString subject;
    QStringList paragraphs; ///< before the table
    QList<PaperColumn> columns;
    QList<QStringList> rows;
    QStringList totals;  ///< in bold under the table, at its right
    QStringList closing; ///< behind the table
    QString slipTitle;   ///< empty for a letter without a slip
    QStringList slip;    ///< its lines, kept together
};

/// One letter as a job of its own, on as many pages as its table needs.
PrintJob printed(const Letter& letter);
/// Several, each on pages of its own, numbered by themselves.
PrintJob printed(const QList<Letter>& letters, const QString& title);

} // namespace molven

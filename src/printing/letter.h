#pragma once

#include "printing/print_job.h"

#include <QStringList>

namespace molven {

/// A letter with a table, ready to print.
struct Letter {
    QString sender;
    QString footer;
    QStringList address; ///< of the receiver
    QString placeAndDate;
    QString subject;
    QStringList paragraphs; ///< before the table
    QStringList columns;
    QList<int> widths; ///< twips, of the columns; 10,000 in all
    QList<QStringList> rows;
    QStringList closing; ///< behind the table
};

/// One letter as a job of its own, on as many pages as its table needs.
PrintJob printed(const Letter& letter);

} // namespace molven

#pragma once

#include "accounting/tables.h"
#include "data/code_kind.h"

namespace molven::statistics {

/// What a report groups the lines by.
struct Key {
    QString caption; ///< of the column
    Text SalesStatistics::*code;
    const CodeKind* names = nullptr;             ///< of the codes; none when the lines or nothing names them
    QString (*nameOf)(const QString&) = nullptr; ///< of codes that no table holds
};

/// One of the reports.
struct ReportKind {
    QString number; ///< "1" to "17", "51", "52", "96" to "99"; the mode word of those from "10" on
    QString title;
    QList<Key> keys;

    /// Twelve months of two years.
    bool isByMonth() const { return number == u"99"; }
    /// Turnover as the transfer to accounting books it, carriage and exempt amounts included.
    bool isByAccount() const { return number == u"98"; }
};

const QList<ReportKind>& reports();
/// The report of a number; the first one for another text.
const ReportKind& report(const QString& number);

} // namespace molven::statistics

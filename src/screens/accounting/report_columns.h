#pragma once

#include "accounting/sales_report.h"
#include "printing/report.h"
#include "ui/record_model.h"

/// A statistics report as a list: on screen, on paper, in files.
namespace molven::report_columns {

/// Columns of the groups at a level of the report.
QList<GridColumn> groups(const statistics::SalesReport& report, qsizetype level);
/// Columns of its rows as a whole: every key, then what stands beside the last one.
QList<GridColumn> all(const statistics::SalesReport& report);
/// Columns of the invoice lines below the last level.
const QList<GridColumn>& lines();

/// The whole report with a subtotal for each group.
Report paper(const statistics::SalesReport& report, statistics::Sorting sorting);
inline const QString DataName = QStringLiteral("CADATA.TXT"), ReadableName = QStringLiteral("CASTAT.TXT");
/// Writes both files of the report into the work folder: separated by tabs, one line a row under a line of titles.
/// "CADATA.TXT" has fields and numbers as they are stored, "CASTAT.TXT" names and French amounts, in Windows-1252.
void writeFiles(const statistics::SalesReport& report, statistics::Sorting sorting, const QString& folder);

} // namespace molven::report_columns

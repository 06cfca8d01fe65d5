#include "ui/printed_list.h"

#include "data/clock.h"
#include "data/dates.h"
#include "printing/report.h"
#include "ui/record_model.h"

namespace molven {

namespace {

constexpr int PageWidth = 11300;

QList<ReportColumn> columnsOf(const RecordModel& rows) {
    int pixels = 0;
    for (const GridColumn& column : rows.columns()) pixels += column.width;
    QList<ReportColumn> columns;
    for (const GridColumn& column : rows.columns())
        columns.append({column.title, column.width * PageWidth / pixels, column.field->kind == Field::Kind::Number});
    return columns;
}

} // namespace

PrintJob printedList(const QString& title, const RecordModel& rows, int groupColumn, const QString& count) {
    Report report(title, dateText(Clock::today()), columnsOf(rows));
    QString group;
    int groupRows = 0;
    const auto endGroup = [&] {
        if (groupRows > 0 && !count.isEmpty()) report.total(count + QString::number(groupRows));
        groupRows = 0;
    };
    for (int row = 0; row < rows.rowCount(); ++row) {
        if (groupColumn >= 0 && (row == 0 || rows.text(row, groupColumn) != group)) {
            endGroup();
            group = rows.text(row, groupColumn);
            report.group(rows.columns()[groupColumn].title + QStringLiteral(" : ") + group);
        }
        groupRows += groupColumn >= 0;
        QStringList cells;
        for (int column = 0; column < rows.columnCount(); ++column) cells.append(rows.text(row, column));
        report.row(cells);
    }
    endGroup();
    return report.finish(
        QStringLiteral("Nbre sélection : %1 / nbre de pages : %2").arg(rows.rowCount()).arg(report.pages()));
}

} // namespace molven

#include "ui/printed_list.h"

#include "ui/record_model.h"

namespace molven {

namespace {

QList<PaperColumn> columnsOf(const RecordModel& rows) {
    QList<PaperColumn> columns;
    for (const GridColumn& column : rows.columns())
        columns.append({column.title, column.field->kind == Field::Kind::Number});
    return columns;
}

} // namespace

QString groupTitle(const QString& column, const QString& value) {
    return value.isEmpty() ? QStringLiteral("Sans ") + column.toLower() : column + QStringLiteral(" : ") + value;
}

Report printedList(const QString& title, const RecordModel& rows, const ListLayout& layout) {
    Report report(title, columnsOf(rows));
    report.say(layout.words);
    if (!rows.filter().isEmpty()) report.say(rows.filterWords());
    std::optional<QString> group;
    rows.forEach([&](const Record& record) {
        const QStringList cells = rows.cells(record);
        if (layout.groupColumn >= 0 && group != cells[layout.groupColumn]) {
            group = cells[layout.groupColumn];
            report.group(groupTitle(rows.columns()[layout.groupColumn].title, *group));
        }
        report.row(cells);
    });
    report.count();
    return report;
}

} // namespace molven

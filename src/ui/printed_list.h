#pragma once

#include "printing/report.h"

namespace molven {

class RecordModel;

/// How a printed list is headed and grouped.
struct ListLayout {
    QString words = {};   ///< what was asked, under the title
    int groupColumn = -1; ///< a new value of this column begins a group, headed by it; -1 for none
};

/// The rows that a grid shows as a printed list, which says the filter that was typed.
Report printedList(const QString& title, const RecordModel& rows, const ListLayout& layout = {});

/// The heading of a group: a column's title and the value, or that there is none.
QString groupTitle(const QString& column, const QString& value);

} // namespace molven

#pragma once

#include "printing/print_job.h"

namespace molven {

class RecordModel;

/// The rows of a grid as a printed list: its columns share the width of the paper as they share the grid's. A new value
/// of `groupColumn` begins a group, headed by its text; -1 for none. `count` stands before the number of rows at the
/// end of a group; empty for none.
PrintJob printedList(const QString& title, const RecordModel& rows, int groupColumn = -1, const QString& count = {});

} // namespace molven

#pragma once

#include "ui/record_panel.h"

namespace molven {

/// Puts into `record` what the user typed over `before`, the record the boxes were filled from. Throws Refusal for a
/// number that is not one.
void carryTyped(const RecordPanel& boxes, const Record& before, Record& record, const QList<const Field*>& except = {});

} // namespace molven

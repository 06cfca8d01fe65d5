#include "screens/sales/typed_boxes.h"

namespace molven {

void carryTyped(const RecordPanel& boxes, const Record& before, Record& record, const QList<const Field*>& except) {
    Record typed = before;
    boxes.store(typed);
    for (const FieldBox& box : boxes.boxes()) {
        const QString value = typed.value(*box.field);
        if (!except.contains(box.field) && value != before.value(*box.field)) record.set(*box.field, value);
    }
}

} // namespace molven

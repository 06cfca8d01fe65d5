#include "ui/code_names.h"

#include "data/errors.h"
#include "reference/codes.h"
#include "ui/form.h"
#include "ui/grid.h"

namespace molven {

QString CodeNames::of(const Field& field, const Record& row) {
    auto* form = Form::of(&grid_);
    const CodeKind* kind = form ? codes::kindOf(field, row) : nullptr;
    if (!kind || kind->key == &field) return {};
    const QString code = row.value(field);
    if (!kind->table) return kind->meanings.value(kind->letters.indexOf(code));
    const auto key = std::pair(kind, code);
    const auto known = known_.constFind(key);
    if (known != known_.constEnd()) return *known;
    try {
        const QString path = form->session().path(kind->file);
        return *known_.insert(key, codes::words(workspace_.open(path), field, *kind, code));
    } catch (const DataError&) { // worth no message
        return {};
    }
}

} // namespace molven

#pragma once

#include "data/errors.h"
#include "data/record.h"

#include <QList>

namespace molven {

/// What the user acts on is no longer what the screen shows: another workstation wrote it meanwhile. The text says what
/// changed, nothing was written; the screen offers to read the record again.
class ChangedElsewhere : public Refusal {
public:
    using Refusal::Refusal;
};

/// A field and the words for its change: "Le patient a été modifié".
struct WatchedField {
    const Field* field;
    const char* changed;
};

/// Throws ChangedElsewhere, with one line a field, unless the fields hold what the user read.
void requireUnchanged(const Record& stored, const Record& asRead, const QList<WatchedField>& fields);

} // namespace molven

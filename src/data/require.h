#pragma once

#include "data/errors.h"
#include "data/schema.h"

namespace molven {

/// Throws Refusal with this text (UTF-8) and the field unless `held`.
inline void require(bool held, const char* message, const Field& field) {
    if (!held) throw Refusal(QString::fromUtf8(message), field.name);
}

} // namespace molven

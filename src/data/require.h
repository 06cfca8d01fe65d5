#pragma once

#include "data/errors.h"
#include "data/schema.h"

namespace molven {

/// Throws Refusal with this text and the control or field unless `held`.
inline void require(bool held, const QString& message, const QString& field) {
    if (!held) throw Refusal(message, field);
}
inline void require(bool held, const QString& message, const Field& field) { require(held, message, field.name); }

} // namespace molven

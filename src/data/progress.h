#pragma once

#include "data/errors.h"

#include <functional>

namespace molven {

/// Is told how much of a work is done; answers false when its user stopped it.
using Progress = std::function<bool(int done, int total)>;

/// Tells it, where there is somebody to tell. Throws Refusal once the work is stopped: nothing of it is kept.
inline void tell(const Progress& progress, qsizetype done, qsizetype total) {
    if (progress && !progress(static_cast<int>(done), static_cast<int>(total)))
        throw Refusal(QStringLiteral("Opération abandonnée"));
}

} // namespace molven

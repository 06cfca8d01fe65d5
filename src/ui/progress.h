#pragma once

#include "data/progress.h"
#include "data/workspace.h"

#include <QString>

class QWidget;

namespace molven {

/// Shows, over a window, how far a work is once it takes more than half a second; Escape and the mouse stop it, Return
/// does not: it may have been pressed twice. The display goes with the last copy of what is answered.
Progress progress(QWidget& over, const QString& what);

/// Runs a work that the engine does in few long statements: the same display without a measure. Throws Refusal when the
/// user stopped it, once the engine has undone what it wrote. The work asks nothing.
void patiently(QWidget& over, Workspace& workspace, const QString& what, const std::function<void()>& work);

} // namespace molven

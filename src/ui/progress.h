#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace molven {

/// Shows, over a window, how far a work is once it takes more than half a second; Escape and the mouse stop it, Return
/// does not: it may have been pressed twice. The function is told what is done of the whole, and answers false when the
/// user stopped the work; the display goes with its last copy.
std::function<bool(int done, int total)> progress(QWidget& over, const QString& what);

} // namespace molven

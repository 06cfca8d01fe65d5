#pragma once

class QWidget;

namespace molven {

/// Gives every control of a window that has no name of its own the caption it stands behind, for screen readers.
void nameControls(QWidget& window);

} // namespace molven

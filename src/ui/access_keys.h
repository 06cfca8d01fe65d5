#pragma once

class QWidget;

namespace molven {

/// Gives each captioned box of a window that has no access key one of the letters of its caption that no button and no
/// other caption of the window has: the first of a word where it is free. Boxes whose letters are all taken are reached
/// by Tab.
void giveAccessKeys(QWidget& window);

} // namespace molven

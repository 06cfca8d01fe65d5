#pragma once

namespace molven {

/// From now on the program shows in a window how far the files of an earlier version are brought up to date.
void showUpgradesInWindow();

} // namespace molven

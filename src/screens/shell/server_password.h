#pragma once

namespace molven {

/// From now on the program asks in a window for the password that a server wants.
void askServerPasswordInWindow();

} // namespace molven

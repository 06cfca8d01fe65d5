#pragma once

namespace molven {

class Desk;

/// Makes every built screen known to the desk under its name.
void addScreens(Desk& desk);

/// Opens the first window, as the program does when it starts.
void startProgram(Desk& desk);

} // namespace molven

#pragma once

#include "data/progress.h"

#include <QString>

namespace molven {

/// Shows how far a file of an earlier version is with being brought up to date, once it takes more than half a second,
/// until the last copy of what is answered is gone; told by whichever thread opens the file. Nothing else can be done
/// meanwhile, and nothing stops it. For Layout::showUpgrades().
Progress upgradeDisplay(const QString& path);

} // namespace molven

#pragma once

#include "ui/form.h"

namespace molven {

/// Stands for a screen that does not exist yet: carries its menu entry's name and says so.
class UnbuiltForm : public Form {
public:
    UnbuiltForm(Desk& desk, const QString& name, const QString& title);
};

} // namespace molven

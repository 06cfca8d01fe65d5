#pragma once

#include "screens/reference/code_table_forms.h"

namespace molven {

/// What each depot should hold of each article.
class EndowmentForm : public MolvenTableForm {
public:
    explicit EndowmentForm(Desk& desk);
};

} // namespace molven

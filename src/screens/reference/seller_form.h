#pragma once

#include "data/database.h"
#include "ui/form.h"
#include "ui/record_state.h"

namespace molven {

class RecordPanel;

/// The company's identity on its papers: its boxes are open all the time.
class SellerForm : public Form {
public:
    explicit SellerForm(Desk& desk);

protected:
    bool hasUnsavedWork() const override { return state_.hasUnsavedWork(); }

private:
    void validate();
    void show();

    Workspace workspace_;
    Database molven_;
    RecordPanel* panel_;
    RecordState state_;
};

} // namespace molven

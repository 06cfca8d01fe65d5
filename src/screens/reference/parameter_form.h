#pragma once

#include "data/database.h"
#include "reference/parameters.h"
#include "ui/form.h"

namespace molven {

class Grid;
class RecordPanel;

/// The short code lists, one at a time: the mode word chooses the list.
class ParameterForm : public Form {
public:
    explicit ParameterForm(Desk& desk);

private:
    QLayout* buttonRow();
    void show(const Record& entry);
    void startAdding();
    void write();
    void remove();
    void leaveEntry();
    void setAdding(bool adding);

    Workspace workspace_;
    Database molven_;
    const ParameterList& list_;
    Grid* grid_;
    RecordPanel* panel_;
    QPushButton* add_ = nullptr;
    QPushButton* change_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* validate_ = nullptr;
    Record shown_{strparam}; ///< the entry as read
    bool adding_ = false;
};

} // namespace molven

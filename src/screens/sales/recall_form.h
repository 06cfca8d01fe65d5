#pragma once

#include "sales/recall.h"
#include "ui/selection_form.h"

namespace molven {

/// Recall of a lot: every unit concerned, where it is and in whom, on screen, on paper, and one letter a hospital.
class RecallForm : public SelectionForm {
public:
    explicit RecallForm(Desk& desk);

private:
    void exportAll();
    void find();
    RecallQuery typedQuery() const;
    void requireUnits() const;
    void print();
    void writeLetters();

    Workspace workspace_;
    Database molven_;
    RecallQuery query_;
    QList<Record> units_;
};

} // namespace molven

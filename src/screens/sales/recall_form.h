#pragma once

#include "sales/recall.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class CriteriaPanel;
class Grid;

/// Recall of a lot: every unit concerned, where it is and in whom, on screen, on paper, and one letter a hospital.
class RecallForm : public Form {
public:
    explicit RecallForm(Desk& desk);

private:
    QLayout* buttons();
    void exportAll();
    void find();
    RecallQuery typedQuery() const;
    void requireUnits() const;
    void print();
    void writeLetters();

    CriteriaPanel* criteria_ = nullptr;
    Grid* grid_ = nullptr;
    QLabel* count_ = nullptr;
    RecallQuery query_;
    QList<Record> units_;
};

} // namespace molven

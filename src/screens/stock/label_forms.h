#pragma once

#include "data/database.h"
#include "stock/labels.h"
#include "ui/form.h"

class QComboBox;
class QLabel;

namespace molven {

class Grid;

/// Chooses units by the numbers of the documents that moved them, and makes their labels.
class LabelSelectionForm : public Form {
public:
    explicit LabelSelectionForm(Desk& desk);

private:
    struct Range {
        Edit* first;
        Edit* last;
        QPushButton* select;
    };
    Range range(const QString& first, const QString& last, const QString& select, const QString& unitState);
    void select(const Range& range, const QString& unitState);
    void makeLabels();

    Workspace workspace_;
    Database molven_, tri_;
    QLabel* count_;
    Grid* grid_;
    std::optional<labels::NumberRange> chosen_;
    QString chosenState_;
};

/// Prints the labels that wait.
class LabelPrintForm : public Form {
public:
    explicit LabelPrintForm(Desk& desk);

    void shownAgain() override;

private:
    void print();

    Workspace workspace_;
    Database tri_;
    Grid* grid_;
    QComboBox* paper_;
};

} // namespace molven

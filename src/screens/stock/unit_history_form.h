#pragma once

#include "ui/form.h"

class QGridLayout;
class QLabel;

namespace molven {

class Grid;
struct UnitHistory;

/// Where one unit went: itself and its lines on documents, current and archived.
class UnitHistoryForm : public Form {
public:
    explicit UnitHistoryForm(Desk& desk);

private:
    struct Shelf {
        Grid* grid;
        QLabel* count;
    };
    void addShelf(QGridLayout* layout, int row, int column, int number, const QString& caption);
    void find();
    void show(const UnitHistory& history);

    Edit* number_;
    QLabel* heading_;
    QLabel* situation_;
    QList<Shelf> shelves_;
};

} // namespace molven

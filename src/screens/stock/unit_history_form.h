#pragma once

#include "sales/unit_history.h"
#include "ui/form.h"

class QGridLayout;
class QLabel;

namespace molven {

class Grid;

/// Where one unit went: itself and its lines on documents, current and archived.
class UnitHistoryForm : public Form {
public:
    explicit UnitHistoryForm(Desk& desk)
        : UnitHistoryForm(desk, QStringLiteral("T_traimm"), unit_history::Source::Real) {}

protected:
    UnitHistoryForm(Desk& desk, const QString& name, unit_history::Source source);

private:
    struct Shelf {
        Grid* grid;
        QLabel* count;
    };
    void addShelf(QGridLayout* layout, int row, int column, int number, const QString& caption);
    void find();
    void show(const UnitHistory& history);

    unit_history::Source source_;
    Edit* number_;
    QLabel* heading_;
    QLabel* situation_;
    QList<Shelf> shelves_;
};

/// The same for the virtual stock.
class VirtualUnitHistoryForm : public UnitHistoryForm {
public:
    explicit VirtualUnitHistoryForm(Desk& desk)
        : UnitHistoryForm(desk, QStringLiteral("T_traimmv"), unit_history::Source::Virtual) {}
};

} // namespace molven

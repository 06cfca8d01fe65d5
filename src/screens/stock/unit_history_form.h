#pragma once

#include "sales/unit_history.h"
#include "ui/form.h"
#include "ui/opened_on.h"

class QHBoxLayout;
class QLabel;
class QLayout;

namespace molven {

class Grid;

/// Where one unit went: its road in time, then itself and its lines on documents, current and archived.
class UnitHistoryForm : public Form, public OpenedOn {
public:
    explicit UnitHistoryForm(Desk& desk)
        : UnitHistoryForm(desk, QStringLiteral("T_traimm"), unit_history::Source::Real) {}
    void bringUp(const QString& immatriculation) override;

protected:
    UnitHistoryForm(Desk& desk, const QString& name, unit_history::Source source);

private:
    /// The records of one family in one pair of files; folded to its title while there are none.
    struct Shelf {
        Grid* grid;
        QLabel* count;
        QLayout* layout;
    };
    /// The two shelves of one family side by side; one that is alone takes the room.
    struct ShelfRow {
        QHBoxLayout* layout;
        Shelf shelves[2]; ///< current, archived
    };
    QLayout* searchRow();
    Grid* buildRoad();
    ShelfRow buildRow(int row);
    void find();
    void clear();
    void show(const UnitHistory& history);
    void fill(ShelfRow& row, const QList<Record>& current, const QList<Record>& archived);
    /// The document of a step, in the screen of its kind.
    void openDocument(const Record& step);

    unit_history::Source source_;
    Edit* number_;
    QLabel* heading_;
    QLabel* situation_;
    Grid* road_;
    QList<ShelfRow> rows_;
};

/// The same for the virtual stock.
class VirtualUnitHistoryForm : public UnitHistoryForm {
public:
    explicit VirtualUnitHistoryForm(Desk& desk)
        : UnitHistoryForm(desk, QStringLiteral("T_traimmv"), unit_history::Source::Virtual) {}
};

} // namespace molven

#pragma once

#include "data/database.h"
#include "ui/form.h"
#include "ui/grid.h"

class QComboBox;
class QLabel;

namespace molven {

/// One way to sort a printed list; a group field heads its records with its value.
struct ListingOrder {
    QString caption;
    Order order;
    const Field* group = nullptr;
};

/// What a listing selects and shows.
struct Listing {
    QString title; ///< of the window and of the paper
    Database database;
    const Table& table;
    QList<GridColumn> columns;
    const Text& range; ///< field of the two bounds
    QString rangeCaption;
    int digits; ///< of a numeric code, 0 for a text
    QList<ListingOrder> orders;
};

/// Criteria, then the selection in a grid, then the paper.
class ListingForm : public Form {
protected:
    ListingForm(Desk& desk, const QString& name) : Form(desk, name) {}
    void build(const Listing& listing);

private:
    void select();
    void print();
    const ListingOrder& order() const;
    /// The bounds and the order in words.
    QString words() const;

    std::optional<Listing> listing_;
    Edit* first_ = nullptr;
    Edit* last_ = nullptr;
    QComboBox* orders_ = nullptr;
    Grid* grid_ = nullptr;
    QLabel* count_ = nullptr;
};

} // namespace molven

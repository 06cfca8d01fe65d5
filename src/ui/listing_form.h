#pragma once

#include "ui/selection_form.h"

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
    const CodeKind* kind = nullptr; ///< of the bounds
};

/// The records of a table between two bounds, sorted one of several ways, on screen and on paper.
class ListingForm : public SelectionForm {
protected:
    ListingForm(Desk& desk, const QString& name) : SelectionForm(desk, name) {}
    void build(const Listing& listing);

private:
    void select();
    void print();
    const ListingOrder& order() const;
    QString first() const { return criteria().value(QStringLiteral("txtdeb")); }
    QString last() const { return criteria().value(QStringLiteral("txtfin")); }
    /// The bounds and the order in words.
    QString asked() const;

    std::optional<Listing> listing_;
};

} // namespace molven

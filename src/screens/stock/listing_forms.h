#pragma once

#include "stock/stock_listing.h"
#include "stock/unit_listing.h"
#include "ui/selection_form.h"

class QLabel;

namespace molven {

/// Lists units by any of their criteria: shown, printed, labelled, reminded of, returned, deleted.
class UnitListForm : public SelectionForm {
public:
    explicit UnitListForm(Desk& desk);

private:
    void select();
    Recordset selected();
    void print();
    Report report();
    QString nameOf(const QString& client) const;
    void makeLabels();
    void returnUnits();
    void removeUnit();

    Workspace workspace_;
    Database molven_, tri_;
    ListingSelection selection_;
    Criterion selected_;
    bool isReminder_ = false;
    QString reminderWords_; ///< which units the reminder takes; empty when it is none
};

/// Stock of articles with its value, now or at a past date, and stock of units.
class StockListForm : public SelectionForm {
public:
    explicit StockListForm(Desk& desk);

private:
    ListingSelection selection(const ListingCriteria& criteria);
    void listArticles();
    void listArticlesAt();
    void listUnits();
    void showArticles(const QList<Record>& articles, const QString& title);
    void print();
    Report articleReport();
    Report unitReport();
    QString amountPattern();
    /// The words on the paper.
    QString asked() const;

    Workspace workspace_;
    const UnitFiles unitFiles_;
    Database molven_, compta_;
    QLabel* step_ = nullptr;
    QString title_; ///< of what is listed
    QList<Record> articles_;
    ListingSelection unitSelection_;
    std::optional<Criterion> units_; ///< the units listed; nothing when articles are
};

} // namespace molven

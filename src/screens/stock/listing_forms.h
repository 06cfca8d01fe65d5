#pragma once

#include "stock/stock_listing.h"
#include "stock/unit_listing.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class CriteriaPanel;
class Grid;

/// Lists units by any of their criteria: shown, printed, labelled, reminded of, returned, deleted.
class UnitListForm : public Form {
public:
    explicit UnitListForm(Desk& desk);

private:
    QLayout* buttons();
    void setPickers();
    void select();
    void requireSelection() const;
    Recordset selected();
    void print();
    void makeLabels();
    void returnUnits();
    void removeUnit();

    Workspace workspace_;
    Database molven_, tri_;
    CriteriaPanel* criteria_ = nullptr;
    Grid* grid_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* count_ = nullptr;
    ListingSelection selection_;
    std::optional<Criterion> selected_;
    bool isReminder_ = false;
};

/// Stock of articles with its value, now or at a past date, and stock of units.
class StockListForm : public Form {
public:
    explicit StockListForm(Desk& desk);

private:
    ListingSelection selection(const ListingCriteria& criteria);
    void listArticles();
    void listArticlesAt();
    void listUnits();
    void showArticles(const QList<Record>& articles, const QString& title);
    void print();
    void printArticles();

    Workspace workspace_;
    Database molven_;
    CriteriaPanel* criteria_ = nullptr;
    Grid* grid_ = nullptr;
    QLabel* total_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* step_ = nullptr;
    QString title_; ///< of what is listed; empty before
    bool ofUnits_ = false;
    QList<Record> articles_;
};

} // namespace molven

#pragma once

#include "stock/stock_listing.h"
#include "stock/unit_listing.h"
#include "ui/form.h"
#include "ui/pick_lists.h"

class QLabel;

namespace molven {

class CriteriaPanel;
struct CriterionBox;
class Grid;

/// What the listings share: their criteria, and the lists that F2 opens in them.
class CriteriaForm : public Form {
protected:
    CriteriaForm(Desk& desk, const QString& screen, const QList<CriterionBox>& boxes);
    /// Leaving a box of these criteria makes a short code or number whole.
    void completeOnLeaving(const ListingCriteria& criteria);
    /// F2 in a box; none when the screen has no such box.
    void setPicker(const char* box, const Field& field, const std::function<PickList(const pick_lists::Chosen&)>& list);

    Workspace workspace_;
    Database molven_;
    CriteriaPanel* criteria_;
};

/// Lists units by any of their criteria: shown, printed, labelled, reminded of, returned, deleted.
class UnitListForm : public CriteriaForm {
public:
    explicit UnitListForm(Desk& desk);

private:
    QLayout* buttons();
    void select();
    void requireSelection() const;
    Recordset selected();
    void print();
    Report report();
    QString nameOf(const QString& client) const;
    void makeLabels();
    void returnUnits();
    void removeUnit();

    Database tri_;
    Grid* grid_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* count_ = nullptr;
    ListingSelection selection_;
    std::optional<Criterion> selected_;
    bool isReminder_ = false;
    QString reminderWords_; ///< which units the reminder takes; empty when it is none
};

/// Stock of articles with its value, now or at a past date, and stock of units.
class StockListForm : public CriteriaForm {
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
    QString words() const;

    Database compta_;
    Grid* grid_ = nullptr;
    QLabel* total_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* step_ = nullptr;
    QString title_; ///< of what is listed; empty before
    QList<Record> articles_;
    ListingSelection unitSelection_;
    std::optional<Criterion> units_; ///< the units listed; nothing when articles are
};

} // namespace molven

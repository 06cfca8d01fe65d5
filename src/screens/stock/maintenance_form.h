#pragma once

#include "ui/code_boxes.h"
#include "ui/form.h"

class QLabel;
class QLayout;

namespace molven {

/// Works over many records, one a mode word: "PRO" carries the articles into their units, "STK" counts the followed
/// articles again with their average price, "FAM" gives a family another code. StockRecountForm is a fourth.
class MaintenanceForm : public Form {
public:
    explicit MaintenanceForm(Desk& desk) : MaintenanceForm(desk, QStringLiteral("T_utilit")) {}

protected:
    MaintenanceForm(Desk& desk, const QString& name);

private:
    /// What one mode shows and does.
    struct Task {
        QString title, explanation;
        QList<std::pair<QString, QString>> boxes; ///< names and captions
        void (MaintenanceForm::*shown)();         ///< a box was left
        void (MaintenanceForm::*run)();
    };
    static const Task& taskOf(const QString& name, const QString& mode);

    QLayout* boxRow(const Task& task);
    void setPickers();
    QString typed(const char* box) const;
    void showRange();
    void showFamily();
    void nothingMore() {}
    void carryArticles();
    void recount();
    void recountUnits();
    void begin();
    void renameFamily();
    void finish(const QString& what);

    Workspace workspace_;
    Database molven_;
    QLabel* words_;
    QLabel* step_;
};

/// Counts the stock of the articles followed by unit again, and nothing else.
class StockRecountForm : public MaintenanceForm {
public:
    explicit StockRecountForm(Desk& desk) : MaintenanceForm(desk, QStringLiteral("T_procal")) {}
};

} // namespace molven

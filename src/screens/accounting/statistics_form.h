#pragma once

#include "accounting/sales_report.h"
#include "ui/opened_by_menu.h"
#include "ui/selection_form.h"

namespace molven {

class FigureChart;

/// Turnover by whatever the report groups it by, compared with another period; the list opens group by group down to
/// the invoice line, and from there the document. The mode word is the report's number; the first nine have none, and
/// the menu entry tells which one is meant.
class StatisticsForm : public SelectionForm, public OpenedByMenu {
public:
    explicit StatisticsForm(Desk& desk);
    void openedBy(const QString& entry) override;

private:
    void chooseReport(const QString& number);
    const statistics::ReportKind& kind() const;
    statistics::Sorting sorting() const;
    statistics::Query typedQuery() const;
    void select();
    void showLevel();
    void showGroups();
    void showLines();
    void open(const Record& row);
    void openDocument(const Record& line);
    void goBack();
    void drawCharts(const QList<Record>& rows);
    void drawMonths();
    QString pathWords() const;
    /// Throws Refusal "Faire une sélection" without a report; another one when its files were replaced since.
    statistics::SalesReport& report();
    void print();
    void exportAll();

    Workspace workspace_;
    sales_statistics::Files files_;
    std::unique_ptr<statistics::SalesReport> report_;
    qint64 version_ = 0; ///< of the work file when the report was computed
    QStringList path_;   ///< keys of the groups that the list was opened at
    QStringList names_;  ///< the same in words
    QLabel* place_ = nullptr;
    QPushButton* back_ = nullptr;
    FigureChart* bars_ = nullptr;
    FigureChart* line_ = nullptr;
};

} // namespace molven

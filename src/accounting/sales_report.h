#pragma once

#include "accounting/report_kinds.h"
#include "accounting/sales_statistics.h"

#include <QHash>

#include <optional>

namespace molven::statistics {

/// What a report is asked for. Codes as typed; empty ones ask nothing.
struct Query {
    Period period;
    std::optional<Period> compared; ///< the period that it is compared with
    QString firstClient, lastClient, clientFamily, firstArticle, lastArticle, articleFamily, supplier, representative,
        surgeon, department;

    /// The condition on the lines of a work table.
    Criterion criterion(const SalesStatistics& lines) const;
    /// " Du 01/01/2026 au 31/12/2026   comparé à ...   Client : 000001".
    QString words() const;
};

/// What a group of lines adds up to.
struct Figures {
    Decimal quantity, gross, net, purchase, comparedNet;
    Figures& operator+=(const Figures& other);
    Decimal margin() const { return net - purchase; }
    /// Margin in percent of the net amount, 0 without one.
    Decimal marginPercent() const;
};

/// Fills the work tables that a report reads. Throws Refusal "aucune facture sélectionnée" when the period has none.
void prepare(sales_statistics::Files files, const Query& query);

enum class Sorting { ByKey, ByAmount };

/// A report as it was computed: groups within groups, from one summary of each period.
class SalesReport {
public:
    /// Reads `statd`, and `statdc` when periods are compared; both must have been regenerated for the query.
    SalesReport(sales_statistics::Files files, const ReportKind& kind, const Query& query);

    const ReportKind& kind() const { return kind_; }
    const Query& query() const { return query_; }
    bool isEmpty() const { return groups_.isEmpty(); }
    const Figures& total() const { return total_; }
    /// Turnover by month "yyyymm" of the period, and of the one compared with.
    const QList<std::pair<QString, Decimal>>& months() const { return months_; }
    const QList<std::pair<QString, Decimal>>& comparedMonths() const { return comparedMonths_; }

    /// The groups one level below these keys ("000001" of a report by clients and articles: its articles).
    QList<Record> level(const QStringList& path, Sorting sorting) const;
    /// Every row of the report: a group for each combination of keys, in order of level().
    QList<Record> rows(Sorting sorting) const;
    /// The same one by one, where they are too many to be kept.
    void visit(Sorting sorting, const std::function<void(const Record&)>& take) const;
    /// The lines that a group is made of that also meet the filter, by date unless another order is given.
    Recordset lines(const QStringList& path, const Criterion& filter = {}, const Order& order = {}) const;

private:
    struct Group {
        QStringList keys;
        Figures figures;
    };
    void read(const SalesStatistics& table, Decimal Figures::*net, QList<std::pair<QString, Decimal>>& months);
    void addCarriage(const Period& period, Decimal Figures::*net);
    void add(const QStringList& keys, const Figures& figures);
    void addMonthsWithoutSales();
    Record rowOf(const QStringList& keys, const Figures& figures) const;
    QString nameOf(qsizetype level, const QString& code) const;

    sales_statistics::Files files_;
    const ReportKind& kind_;
    Query query_;
    QList<Group> groups_;
    QHash<QStringList, qsizetype> places_; ///< of the groups, by their keys in upper case
    Figures total_;
    QList<std::pair<QString, Decimal>> months_, comparedMonths_;
    QList<QHash<QString, QString>> names_; ///< of the codes of each level
};

} // namespace molven::statistics

#pragma once

#include "printing/print_job.h"

#include <QStringList>

namespace molven {

/// A column of a printed list.
struct ReportColumn {
    QString title;
    int width;             ///< twips
    bool isNumber = false; ///< right-aligned
};

/// A printed list on upright A4: a heading with the date and the page, columns, groups, a footer. The columns share
/// 11,300 twips; a text wider than its column is cut with "...".
class Report {
public:
    Report(const QString& title, const QString& date, const QList<ReportColumn>& columns);

    void row(const QStringList& cells);
    /// A line in bold over the rows that follow, kept with the first of them.
    void group(const QString& text);
    /// A line in bold under the last row.
    void total(const QString& text);
    /// Footer and end.
    const PrintJob& finish(const QString& footer);

    int pages() const { return page_; }

private:
    void startPage();
    void line(const QStringList& cells, bool bold);
    void bold(const QString& text);
    void need(int lines);
    QString cut(const QString& text, int width) const;

    PrintJob job_;
    QString title_, date_;
    QList<ReportColumn> columns_;
    int page_ = 0;
    int y_ = 0;
};

} // namespace molven

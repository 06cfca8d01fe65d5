#pragma once

#include "printing/print_job.h"

namespace molven {

/// A column of a table on paper.
struct PaperColumn {
    QString title;
    bool isNumber = false; ///< right-aligned
};

/// Columns as wide as their texts. When these need more than the paper has, the widest columns give way and their cells
/// are broken into lines. Widths are twips.
class PaperTable {
public:
    PaperTable(const QList<PaperColumn>& columns, const QString& family, int points);

    /// The row will be printed: the columns make room for it.
    void measure(const QStringList& cells);
    /// What the columns need to print every cell on one line.
    int naturalWidth() const;
    /// Shares that width among the columns; before anything is printed.
    void fit(int width);

    int height(const QStringList& cells) const;
    /// Print at that place and answer the height used. The titles are underlined.
    int printTitles(PrintJob& job, int x, int y) const;
    int print(PrintJob& job, int x, int y, const QStringList& cells) const;

private:
    QStringList titles() const;
    int printRow(PrintJob& job, int x, int y, const QStringList& cells, bool isBold) const;

    QList<PaperColumn> columns_;
    QList<int> widths_;     ///< with the gap behind each
    QList<int> titleWords_; ///< the widest word of each title, which is never cut
    QString family_;
    int points_;
    PrintJob ruler_{QString()};
    bool hasBrokenCells_ = false;
};

} // namespace molven

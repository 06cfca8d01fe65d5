#include "printing/paper_table.h"

#include <algorithm>
#include <numeric>

namespace molven {

namespace {

constexpr int Gap = 140, RowGap = 50;

/// From one line's top to the next one's.
int lineStep(int points) { return points * 24; }

} // namespace

PaperTable::PaperTable(const QList<PaperColumn>& columns, const QString& family, int points)
    : columns_(columns), widths_(columns.size(), 0), family_(family), points_(points) {
    ruler_.setFont(family, points, true);
    for (qsizetype i = 0; i < columns_.size(); ++i) widths_[i] = ruler_.textWidth(columns_[i].title) + Gap;
    ruler_.setBold(false);
}

QStringList PaperTable::titles() const {
    QStringList all;
    for (const PaperColumn& column : columns_) all.append(column.title);
    return all;
}

void PaperTable::measure(const QStringList& cells) {
    for (qsizetype i = 0; i < std::min(cells.size(), widths_.size()); ++i)
        widths_[i] = std::max(widths_[i], ruler_.textWidth(cells[i]) + Gap);
}

int PaperTable::naturalWidth() const { return std::accumulate(widths_.begin(), widths_.end(), 0); }

void PaperTable::fit(int width) {
    QList<int> narrowFirst = widths_;
    std::sort(narrowFirst.begin(), narrowFirst.end());
    int left = width, columns = static_cast<int>(widths_.size());
    for (const int natural : narrowFirst) {
        if (natural * columns > left) break;
        left -= natural;
        --columns;
    }
    if (columns == 0) { // all have what they need
        for (int& one : widths_) one += left / static_cast<int>(widths_.size());
        return;
    }
    for (int& one : widths_) one = std::min(one, left / columns);
    hasBrokenCells_ = true;
}

int PaperTable::height(const QStringList& cells) const {
    qsizetype lines = 1;
    for (qsizetype i = 0; hasBrokenCells_ && i < std::min(cells.size(), widths_.size()); ++i)
        lines = std::max(lines, ruler_.lines(cells[i], widths_[i] - Gap).size());
    return static_cast<int>(lines) * lineStep(points_) + RowGap;
}

int PaperTable::printRow(PrintJob& job, int x, int y, const QStringList& cells, bool isBold) const {
    job.setFont(family_, points_, isBold);
    int lines = 1;
    for (qsizetype i = 0; i < widths_.size(); ++i) {
        const QString text = cells.value(i);
        const int room = widths_[i] - Gap;
        const int indent = columns_[i].isNumber ? std::max(0, room - job.textWidth(text)) : 0;
        job.setPosition(x + indent, y);
        lines = std::max(lines, job.print(text, room, lineStep(points_)));
        x += widths_[i];
    }
    return lines * lineStep(points_) + RowGap;
}

int PaperTable::printTitles(PrintJob& job, int x, int y) const {
    const int height = printRow(job, x, y, titles(), true);
    job.setPosition(x, y + height - RowGap / 2);
    job.bar(naturalWidth() - Gap, 10);
    return height + RowGap;
}

int PaperTable::print(PrintJob& job, int x, int y, const QStringList& cells) const {
    return printRow(job, x, y, cells, false);
}

} // namespace molven

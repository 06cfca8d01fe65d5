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
    : columns_(columns), family_(family), points_(points) {
    ruler_.setFont(family, points, true);
    for (const PaperColumn& column : columns_) {
        int widest = 0;
        for (const QString& word : column.title.split(u' ')) widest = std::max(widest, ruler_.textWidth(word));
        titleWords_.append(widest + Gap);
        widths_.append(ruler_.textWidth(column.title) + Gap);
    }
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
    const int columns = static_cast<int>(widths_.size());
    if (const int spare = width - naturalWidth(); spare >= 0) {
        for (int& one : widths_) one += spare / columns;
        return;
    }
    const bool wordsFit = std::accumulate(titleWords_.begin(), titleWords_.end(), 0) <= width;
    const int least = wordsFit ? width : width / columns;
    const auto fitted = [&](int widest) {
        QList<int> widths;
        for (int i = 0; i < columns; ++i)
            widths.append(std::min(widths_[i], std::max(widest, std::min(titleWords_[i], least))));
        return widths;
    };
    int widest = width;
    QList<int> shared = fitted(widest);
    while (std::accumulate(shared.begin(), shared.end(), 0) > width) shared = fitted(widest -= 20);
    widths_ = shared;
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

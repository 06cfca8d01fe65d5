#include "printing/document_page.h"

#include "data/format.h"
#include "printing/barcode_line.h"
#include "printing/document_end.h"
#include "printing/document_places.h"

namespace molven::document_page {

namespace {

using namespace places;

constexpr int ColumnGap = 90, RowStep = 230, DetailStep = 200, DetailGap = 260, GroupHeight = 300, LineGap = 70;
constexpr int BarStep = 2600, BarBlock = barcode_line::Height + 260;
constexpr int CarriedHeight = 300;

/// Lays one document out on its pages; the heads of the pages come last, when their number is known.
class DocumentWriter {
public:
    DocumentWriter(PrintJob& job, const PaperDocument& document, const Style& style)
        : job_(job), document_(document), style_(style), firstPage_(job.pages()), page_(firstPage_) {
        int rest = Width;
        for (const DocumentColumn& column : document_.columns) rest -= column.width;
        for (const DocumentColumn& column : document_.columns) widths_.append(column.width > 0 ? column.width : rest);
        for (qsizetype i = 0; document_.columns[i].width > 0; ++i) designationLeft_ += widths_[i];
        bottom_ = footerTop(job_, document_.seller) - CarriedHeight;
    }

    void write() {
        job_.toPage(page_);
        y_ = writeHead(job_, document_) + 160;
        writeTitles();
        const int ending = end::height(job_, document_) - CarriedHeight; // after the last line nothing is carried on
        for (qsizetype i = 0; i < document_.lines.size(); ++i)
            writeLine(document_.lines[i], i + 1 == document_.lines.size() ? ending : 0);
        y_ -= LineGap / 2;
        rule(Line);
        if (y_ + ending > bottom_) startPage();
        end::print(job_, document_, y_, bottom_ + CarriedHeight);
        for (int page = firstPage_; page <= page_; ++page) finishPage(page);
    }

private:
    void startPage() {
        if (document_.carriedColumn >= 0) writeCarried(QStringLiteral("À reporter"));
        job_.toPage(++page_);
        y_ = writeShortHead(job_, document_);
        writeTitles();
        if (document_.carriedColumn >= 0) writeCarried(QStringLiteral("Report"));
        group_.clear();
    }

    void writeTitles() {
        job_.setPosition(Left, y_);
        job_.bar(Width, 290, Band);
        job_.setFont(Narrow, 8, true);
        writeCells(y_ + 50, titles());
        y_ += 290 + LineGap;
        firstLine_ = y_;
    }

    QStringList titles() const {
        QStringList all;
        for (const DocumentColumn& column : document_.columns) all.append(column.title);
        return all;
    }

    /// Answers how many rows the cells took.
    int writeCells(int y, const QStringList& cells) {
        int x = Left, rows = 1;
        for (qsizetype i = 0; i < widths_.size(); ++i) {
            const QString text = cells.value(i);
            const int room = widths_[i] - ColumnGap;
            const int indent = document_.columns[i].isNumber ? std::max(0, room - job_.textWidth(text)) : 0;
            job_.setPosition(x + indent, y);
            rows = std::max(rows, job_.print(text, room, RowStep));
            x += widths_[i];
        }
        return rows;
    }

    int rowsOf(const QStringList& cells) {
        qsizetype rows = 1;
        for (qsizetype i = 0; i < widths_.size(); ++i)
            rows = std::max(rows, job_.lines(cells.value(i), widths_[i] - ColumnGap).size());
        return static_cast<int>(rows);
    }

    int detailWidth() const { return Left + Width - (Left + designationLeft_); }

    /// Places the details one behind the other, a new row where one does not fit; answers how many rows they take.
    int flow(const QStringList& details, const std::function<void(int x, int row, const QString&)>& place) {
        int x = 0, row = 0;
        for (const QString& detail : details) {
            const int width = std::min(job_.textWidth(detail), detailWidth());
            if (x > 0 && x + width > detailWidth()) x = 0, ++row;
            if (place) place(x, row, detail);
            x += width + DetailGap;
        }
        return details.isEmpty() ? 0 : row + 1;
    }

    int heightOf(const DocumentLine& line) {
        job_.setFont(Narrow, 9);
        int height = rowsOf(line.cells) * RowStep + LineGap;
        job_.setFont(Narrow, 8);
        height += static_cast<int>(line.under.size()) * DetailStep + flow(line.details, {}) * DetailStep;
        if (!line.bars.isEmpty()) height += BarBlock;
        return height + (line.group != group_ && !line.group.isEmpty() ? GroupHeight : 0);
    }

    /// What stands behind the last line goes with it to the next page, so that none holds totals alone.
    void writeLine(const DocumentLine& line, int behind) {
        const int height = heightOf(line);
        const bool goesOn = y_ + height + behind > bottom_ && y_ > firstLine_ && height + behind < bottom_ / 2;
        if (y_ + height > bottom_ || goesOn) startPage();
        writeGroup(line.group);
        job_.setFont(Narrow, 9);
        y_ += writeCells(y_, line.cells) * RowStep;
        job_.setFont(Narrow, 8);
        const int left = Left + designationLeft_;
        for (const QString& text : line.under) {
            job_.setPosition(left, y_);
            job_.print(text);
            y_ += DetailStep;
        }
        y_ += DetailStep * flow(line.details, [&](int x, int row, const QString& detail) {
                  job_.setPosition(left + x, y_ + row * DetailStep);
                  job_.print(detail);
              });
        writeBars(line.bars);
        y_ += LineGap / 2;
        rule(Light);
        y_ += LineGap / 2;
        carried_ += line.carried;
    }

    void writeGroup(const QString& group) {
        if (group != group_ && !group.isEmpty()) {
            job_.setFont(Narrow, 9, true);
            job_.setPosition(Left, y_ + 40);
            job_.print(group == lastGroup_ ? group + QStringLiteral(" (suite)") : group);
            y_ += GroupHeight;
        }
        group_ = lastGroup_ = group;
    }

    void writeBars(const QList<PaperFact>& bars) {
        if (bars.isEmpty()) return;
        int x = Left;
        for (const PaperFact& code : bars) {
            const int left = x;
            x += BarStep;
            if (code.value.isEmpty()) continue;
            barcode_line::print(job_, left, y_ + 30, code.value, style_.barcodeFamily);
            job_.setFont(Narrow, 7);
            job_.setPosition(left, y_ + 30 + barcode_line::Height + 20);
            job_.print(code.caption);
        }
        y_ += BarBlock;
    }

    void writeCarried(const QString& words) {
        job_.setFont(Narrow, 9, true);
        QStringList cells(document_.columns.size());
        cells[document_.carriedColumn] = format(carried_, document_.carriedPattern);
        job_.setPosition(Left + designationLeft_, y_ + 20);
        job_.print(words);
        writeCells(y_ + 20, cells);
        y_ += CarriedHeight;
    }

    void rule(const QColor& color) {
        job_.setPosition(Left, y_);
        job_.bar(Width, 8, color);
    }

    void finishPage(int page) {
        job_.toPage(page);
        writePageNumber(job_, page - firstPage_ + 1, page_ - firstPage_ + 1);
        writeFooter(job_, document_.seller);
    }

    PrintJob& job_;
    const PaperDocument& document_;
    const Style& style_;
    const int firstPage_;
    int page_, y_ = 0, bottom_ = 0, firstLine_ = 0;
    QList<int> widths_;
    int designationLeft_ = 0;
    QString group_;     ///< heading of the lines being written, on this page
    QString lastGroup_; ///< and on the page before
    Decimal carried_;
};

} // namespace

void print(PrintJob& job, const PaperDocument& document, const Style& style) {
    DocumentWriter(job, document, style).write();
}

} // namespace molven::document_page

#include "printing/report.h"

namespace molven {

namespace {

const QString Narrow = QStringLiteral("Arial Narrow");
constexpr int LineStep = 260, PageBottom = 15600, ColumnGap = 120, PageWidth = 11300;

} // namespace

Report::Report(const QString& title, const QString& date, const QList<ReportColumn>& columns)
    : job_(title), title_(title), date_(date), columns_(columns) {
    startPage();
}

void Report::startPage() {
    if (page_ > 0) job_.newPage();
    ++page_;
    job_.setFont(Narrow, 14, true);
    job_.setPosition(0, 0);
    job_.print(title_);
    job_.setFont(Narrow, 9);
    const QString heading = QStringLiteral("Edition du %1   Page : %2").arg(date_).arg(page_);
    job_.setPosition(PageWidth - job_.textWidth(heading), 60);
    job_.print(heading);
    y_ = 560;
    QStringList titles;
    for (const ReportColumn& column : columns_) titles.append(column.title);
    line(titles, true);
    y_ += 60;
}

QString Report::cut(const QString& text, int width) const {
    if (job_.textWidth(text) <= width) return text;
    QString shorter = text;
    while (!shorter.isEmpty() && job_.textWidth(shorter + QStringLiteral("...")) > width) shorter.chop(1);
    return shorter + QStringLiteral("...");
}

void Report::line(const QStringList& cells, bool isBold) {
    job_.setFont(Narrow, 9, isBold);
    int x = 0;
    for (qsizetype i = 0; i < columns_.size(); ++i) {
        const QString text = cut(cells.value(i), columns_[i].width - ColumnGap);
        const int indent = columns_[i].isNumber ? columns_[i].width - ColumnGap - job_.textWidth(text) : 0;
        job_.setPosition(x + indent, y_);
        job_.print(text);
        x += columns_[i].width;
    }
    y_ += LineStep;
}

void Report::need(int lines) {
    if (y_ + lines * LineStep > PageBottom) startPage();
}

void Report::row(const QStringList& cells) {
    need(1);
    line(cells, false);
}

void Report::bold(const QString& text) {
    job_.setFont(Narrow, 10, true);
    job_.setPosition(0, y_);
    job_.print(text);
    y_ += LineStep;
}

void Report::group(const QString& text) {
    need(3);
    y_ += 100;
    bold(text);
}

void Report::total(const QString& text) {
    need(2);
    y_ += 60;
    bold(text);
}

const PrintJob& Report::finish(const QString& footer) {
    if (!footer.isEmpty()) total(footer);
    return job_;
}

} // namespace molven

#include "printing/print_job.h"

#include "data/safe_file.h"

#include <QBuffer>
#include <QMarginsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

namespace molven {

namespace {

/// Fonts are measured at one pixel a twip, so that places do not depend on the printer.
QFont inTwips(const QFont& font) {
    QFont scaled(font);
    scaled.setPixelSize(font.pointSize() * TwipsPerInch / 72);
    return scaled;
}

} // namespace

void PrintJob::setFont(const QString& family, int points, bool bold) {
    font_ = QFont(family, points);
    setBold(bold);
}

void PrintJob::setBold(bool bold) {
    font_.setBold(bold);
    metrics_.reset();
}

void PrintJob::print(const QString& text) {
    if (text.isEmpty()) return;
    onPage_[page_].pieces.append(pieces_.size());
    pieces_.append({page_, x_, y_, font_, text});
}

void PrintJob::bar(int width, int height, const QColor& color) {
    onPage_[page_].bars.append(bars_.size());
    bars_.append({page_, x_, y_, width, height, color});
}

int PrintJob::picture(const QImage& image, int width, int height) {
    if (image.isNull()) return 0;
    const QSize size = image.size().scaled(width, height, Qt::KeepAspectRatio);
    onPage_[page_].pictures.append(pictures_.size());
    pictures_.append({page_, x_, y_, size.width(), size.height(), image});
    return size.height();
}

int PrintJob::print(const QString& text, int width, int lineStep) {
    const QStringList broken = lines(text, width);
    print(text);
    if (broken.size() > 1) pieces_.last().lines = broken, pieces_.last().lineStep = lineStep;
    return static_cast<int>(broken.size());
}

QStringList PrintJob::lines(const QString& text, int width) const {
    if (textWidth(text) <= width) return {text};
    QStringList broken;
    QString line;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        const QString longer = line.isEmpty() ? word : line + u' ' + word;
        if (textWidth(longer) <= width) {
            line = longer;
            continue;
        }
        if (!line.isEmpty()) broken.append(line);
        for (line = word; line.size() > 1 && textWidth(line) > width;) {
            qsizetype fitting = line.size() - 1;
            while (fitting > 1 && textWidth(line.left(fitting)) > width) --fitting;
            broken.append(line.left(fitting));
            line = line.mid(fitting);
        }
    }
    broken.append(line);
    return broken;
}

const QFontMetricsF& PrintJob::metrics() const {
    if (!metrics_) metrics_.emplace(inTwips(font_));
    return *metrics_;
}

int PrintJob::textWidth(const QString& text) const {
    return static_cast<int>(std::lround(metrics().horizontalAdvance(text)));
}

bool PrintJob::contains(const QString& text) const {
    return std::any_of(pieces_.begin(), pieces_.end(),
                       [&text](const PrintedText& piece) { return piece.text == text; });
}

void PrintJob::paint(QPainter& painter, int page) const {
    painter.save();
    const double dotsPerTwip = static_cast<double>(painter.device()->logicalDpiX()) / TwipsPerInch;
    painter.scale(dotsPerTwip, dotsPerTwip);
    const Page shown = onPage_.value(page);
    for (const qsizetype i : shown.bars)
        painter.fillRect(bars_[i].x, bars_[i].y, bars_[i].width, bars_[i].height, bars_[i].color);
    for (const qsizetype i : shown.pictures) {
        const PrintedPicture& one = pictures_[i];
        painter.drawImage(QRectF(one.x, one.y, one.width, one.height), one.image);
    }
    for (const qsizetype i : shown.pieces) {
        const PrintedText& piece = pieces_[i];
        const QFont font = inTwips(piece.font);
        painter.setFont(font);
        double baseline = piece.y + QFontMetricsF(font).ascent();
        for (const QString& line : piece.lines.isEmpty() ? QStringList{piece.text} : piece.lines) {
            painter.drawText(QPointF(piece.x, baseline), line);
            baseline += piece.lineStep;
        }
    }
    painter.restore();
}

QPageLayout PrintJob::pageLayout() const {
    const double margin = MarginTwips * 72.0 / TwipsPerInch;
    return {QPageSize(QPageSize::A4),
            orientation_ == Orientation::Lying ? QPageLayout::Landscape : QPageLayout::Portrait,
            QMarginsF(margin, margin, margin, margin), QPageLayout::Point};
}

void PrintJob::savePdf(const QString& path, const Progress& told) const { writeWhole(path, pdf(told)); }

QByteArray PrintJob::pdf(const Progress& told, Pdf form) const {
    QByteArray bytes;
    QBuffer file(&bytes);
    file.open(QIODevice::WriteOnly);
    QPdfWriter writer(&file);
    if (form == Pdf::Archive) writer.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
    writer.setCreator(QStringLiteral("MOLVEN"));
    writer.setTitle(title_);
    writer.setPageLayout(pageLayout());
    writer.setResolution(600);
    QPainter painter(&writer);
    for (int page = 0; page < pages(); ++page) {
        tell(told, page, pages());
        if (page > 0) writer.newPage();
        paint(painter, page);
    }
    painter.end();
    return bytes;
}

} // namespace molven

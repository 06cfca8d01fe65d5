#include "printing/print_job.h"

#include "data/safe_file.h"

#include <QBuffer>
#include <QFontMetricsF>
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
    font_.setBold(bold);
}

void PrintJob::print(const QString& text) {
    if (!text.isEmpty()) pieces_.append({page_, x_, y_, font_, text});
}

int PrintJob::textWidth(const QString& text) const {
    return static_cast<int>(std::lround(QFontMetricsF(inTwips(font_)).horizontalAdvance(text)));
}

bool PrintJob::contains(const QString& text) const {
    return std::any_of(pieces_.begin(), pieces_.end(),
                       [&text](const PrintedText& piece) { return piece.text == text; });
}

void PrintJob::paint(QPainter& painter, int page) const {
    painter.save();
    const double dotsPerTwip = static_cast<double>(painter.device()->logicalDpiX()) / TwipsPerInch;
    painter.scale(dotsPerTwip, dotsPerTwip);
    for (const PrintedBar& bar : bars_)
        if (bar.page == page) painter.fillRect(bar.x, bar.y, bar.width, bar.height, Qt::black);
    for (const PrintedText& piece : pieces_) {
        if (piece.page != page) continue;
        const QFont font = inTwips(piece.font);
        painter.setFont(font);
        painter.drawText(QPointF(piece.x, piece.y + QFontMetricsF(font).ascent()), piece.text);
    }
    painter.restore();
}

void PrintJob::savePdf(const QString& path) const {
    QByteArray bytes;
    QBuffer file(&bytes);
    file.open(QIODevice::WriteOnly);
    QPdfWriter writer(&file);
    writer.setTitle(title_);
    writer.setPageSize(QPageSize(QPageSize::A4));
    const double margin = MarginTwips * 72.0 / TwipsPerInch;
    writer.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Point);
    writer.setResolution(600);
    QPainter painter(&writer);
    for (int page = 0; page < pages(); ++page) {
        if (page > 0) writer.newPage();
        paint(painter, page);
    }
    painter.end();
    writeWhole(path, bytes);
}

} // namespace molven

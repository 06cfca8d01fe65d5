#pragma once

#include "printing/print_job.h"

#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace molven::test {

inline int widthOf(const PrintedText& piece) {
    PrintJob ruler{QString()};
    ruler.setFont(piece.font.family(), piece.font.pointSize(), piece.font.bold());
    int width = 0;
    for (const QString& line : piece.lines.isEmpty() ? QStringList{piece.text} : piece.lines)
        width = std::max(width, ruler.textWidth(line));
    return width;
}

/// Pieces that stand on the same line must not run into each other.
inline void expectNoOverlap(const PrintJob& job) {
    const QList<PrintedText>& pieces = job.pieces();
    for (qsizetype i = 1; i < pieces.size(); ++i)
        if (pieces[i].page == pieces[i - 1].page && pieces[i].y == pieces[i - 1].y && pieces[i].x > pieces[i - 1].x) {
            EXPECT_LE(pieces[i - 1].x + widthOf(pieces[i - 1]), pieces[i].x + 5) << pieces[i].text.toStdString();
        }
}

/// The page at 300 dots an inch, read by a barcode reader: one code a line.
inline QStringList scanned(const PrintJob& job, int page = 0) {
    const QTemporaryDir folder;
    QImage paper(2480, 3508, QImage::Format_RGB32);
    paper.setDotsPerMeterX(11811);
    paper.setDotsPerMeterY(11811);
    paper.fill(Qt::white);
    QPainter painter(&paper);
    job.paint(painter, page);
    painter.end();
    const QString path = folder.filePath(QStringLiteral("page.png"));
    EXPECT_TRUE(paper.save(path));
    QProcess scanner;
    scanner.start(QStringLiteral("zbarimg"), {QStringLiteral("-q"), QStringLiteral("--raw"),
                                              QStringLiteral("-Sdisable"), QStringLiteral("-Scode128.enable"), path});
    EXPECT_TRUE(scanner.waitForFinished(30'000));
    return QString::fromUtf8(scanner.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace molven::test

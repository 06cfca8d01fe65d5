#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace molven::csv {

/// One record of a CSV file and the line of the file that it begins on, 1 for the first.
struct Row {
    int line = 0;
    QStringList cells;
    QString fault; ///< why it cannot be taken, in French; empty for a sound one
};

/// The longest cell that spreadsheets hold.
constexpr qsizetype LongestCell = 32'767;

/// Reads a file: UTF-8, or Windows-1252 when nothing in it is UTF-8; separated by semicolons or commas, whichever its
/// first line holds more of. A cell in quotes may hold separators, line ends and doubled quotes. Empty lines are left
/// out; the apostrophe that line() puts before a formula is taken off. A row is faulty when a quote is not closed or
/// closed too early, when it is in another encoding than the rest, holds a control character or too long a cell.
QList<Row> read(const QByteArray& bytes);

/// One record as a line, separated by semicolons unless told otherwise, ending in CR LF. A spreadsheet would run a cell
/// that begins with = + - @ and is not a number: an apostrophe before it makes it a text.
QString line(const QStringList& cells, QChar separator = u';');
/// A whole file as spreadsheets in French read it: UTF-8 with its mark.
QByteArray file(const QString& lines);

} // namespace molven::csv

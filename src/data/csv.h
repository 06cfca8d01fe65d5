#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace molven::csv {

/// One record of a CSV file and the line of the file that it begins on, 1 for the first.
struct Row {
    int line = 0;
    QStringList cells;
};

/// Reads a file: UTF-8, or Windows-1252 when it is not valid UTF-8; separated by semicolons or commas, whichever its
/// first line holds more of. A cell in quotes may hold separators, line ends and doubled quotes. Empty lines are left
/// out.
QList<Row> read(const QByteArray& bytes);

/// One record as a line, separated by semicolons, ending in CR LF.
QString line(const QStringList& cells);
/// A whole file as spreadsheets in French read it: UTF-8 with its mark.
QByteArray file(const QString& lines);

} // namespace molven::csv

#include "data/csv.h"

#include <QStringDecoder>

namespace molven::csv {

namespace {

/// The characters 0x80 to 0x9F of Windows-1252, where Latin-1 has none that print.
constexpr char16_t Windows1252[] =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D"
    u"\u017D\u008F\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A"
    u"\u0153\u009D\u017E\u0178";

QString decoded(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    if (!utf8.hasError()) return text;
    QString windows = QString::fromLatin1(bytes);
    for (QChar& c : windows)
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0) c = QChar(Windows1252[c.unicode() - 0x80]);
    return windows;
}

QChar separatorOf(const QString& text) {
    const QString first = text.section(u'\n', 0, 0);
    return first.count(u';') >= first.count(u',') ? u';' : u',';
}

QString quoted(const QString& cell) {
    if (!cell.contains(u';') && !cell.contains(u'"') && !cell.contains(u'\n')) return cell;
    return u'"' + QString(cell).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace

QList<Row> read(const QByteArray& bytes) {
    const QString text = decoded(bytes);
    const QChar separator = separatorOf(text);
    QList<Row> rows;
    Row row{1, {}};
    QString cell;
    bool inQuotes = false;
    int lineNumber = 1;
    const auto endRow = [&] {
        row.cells.append(cell.trimmed());
        cell.clear();
        if (row.cells.size() > 1 || !row.cells.first().isEmpty()) rows.append(row);
        row = {lineNumber, {}};
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\n') ++lineNumber;
        if (inQuotes) {
            if (c != u'"')
                cell += c;
            else if (i + 1 < text.size() && text[i + 1] == u'"')
                cell += text[++i];
            else
                inQuotes = false;
        } else if (c == u'"' && cell.trimmed().isEmpty()) {
            cell.clear();
            inQuotes = true;
        } else if (c == separator) {
            row.cells.append(cell.trimmed());
            cell.clear();
        } else if (c == u'\n') {
            endRow();
        } else if (c != u'\r') {
            cell += c;
        }
    }
    endRow();
    return rows;
}

QString line(const QStringList& cells) {
    QStringList written;
    for (const QString& cell : cells) written.append(quoted(cell));
    return written.join(u';') + QStringLiteral("\r\n");
}

QByteArray file(const QString& lines) { return QByteArrayLiteral("\xEF\xBB\xBF") + lines.toUtf8(); }

} // namespace molven::csv

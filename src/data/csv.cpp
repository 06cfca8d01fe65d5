#include "data/csv.h"

#include "data/decimal.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>

namespace molven::csv {

namespace {

/// The characters 0x80 to 0x9F of Windows-1252, where Latin-1 has none that print.
constexpr char16_t Windows1252[] =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D"
    u"\u017D\u008F\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A"
    u"\u0153\u009D\u017E\u0178";

/// Stands for what cannot be read in a file that is UTF-8 elsewhere.
constexpr QChar Unreadable = QChar::ReplacementCharacter;

bool isUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    Q_UNUSED(text);
    return !decoder.hasError();
}

/// True when a line has letters beyond ASCII that are valid UTF-8: no Windows-1252 text looks so by chance.
bool hasUtf8Line(const QByteArray& bytes) {
    for (const QByteArray& line : bytes.split('\n')) {
        const bool isAscii = std::none_of(line.begin(), line.end(), [](char c) { return c & 0x80; });
        if (!isAscii && isUtf8(line)) return true;
    }
    return false;
}

QString decoded(const QByteArray& bytes) {
    if (isUtf8(bytes) || hasUtf8Line(bytes)) return QString::fromUtf8(bytes);
    QString windows = QString::fromLatin1(bytes);
    for (QChar& c : windows)
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0) c = QChar(Windows1252[c.unicode() - 0x80]);
    return windows;
}

QChar separatorOf(const QString& text) {
    const QString first = text.section(u'\n', 0, 0);
    return first.count(u';') >= first.count(u',') ? u';' : u',';
}

QString quoted(const QString& cell, QChar separator) {
    if (!cell.contains(separator) && !cell.contains(u'"') && !cell.contains(u'\n') && !cell.contains(u'\r'))
        return cell;
    return u'"' + QString(cell).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

/// What a spreadsheet would run, and what was marked as a text already, so that reading gives back the same.
bool looksLikeFormula(const QString& cell) {
    static const QRegularExpression formula(QStringLiteral("^'*[=+@\\-\\t\\r]"));
    return formula.match(cell).hasMatch();
}

QString shownAsText(const QString& cell) {
    return looksLikeFormula(cell) && !Decimal::parse(cell) ? u'\'' + cell : cell;
}

/// Why a cell cannot be taken; empty when it can.
QString faultOf(const QString& cell) {
    if (cell.size() > LongestCell)
        return QStringLiteral("texte trop long : %1 caractères, %2 au plus").arg(cell.size()).arg(LongestCell);
    for (const QChar c : cell) {
        if (c == Unreadable)
            return QStringLiteral("caractère illisible : la ligne n'est pas en UTF-8 comme le reste du fichier");
        if (c.category() == QChar::Other_Control && c != u'\n' && c != u'\r' && c != u'\t')
            return QStringLiteral("caractère interdit, de code %1").arg(c.unicode());
    }
    return {};
}

/// Cuts a text into records.
class Reader {
public:
    explicit Reader(const QString& text) : text_(text), separator_(separatorOf(text)) {}

    QList<Row> rows() {
        for (at_ = 0; at_ < text_.size(); ++at_) take(text_[at_]);
        if (place_ == Place::InQuotes) row_.fault = QStringLiteral("guillemet ouvert et jamais fermé");
        endRow();
        return rows_;
    }

private:
    enum class Place { Plain, InQuotes, BehindQuotes };

    void take(QChar c) {
        if (c == u'\n') ++line_;
        if (place_ == Place::InQuotes) return takeQuoted(c);
        if (c == separator_) return endCell();
        if (c == u'\n') return endRow();
        if (c == u'\r') return;
        if (place_ == Place::BehindQuotes) {
            if (!c.isSpace()) row_.fault = QStringLiteral("texte derrière un guillemet fermant");
        } else if (c == u'"' && cell_.trimmed().isEmpty()) {
            cell_.clear();
            place_ = Place::InQuotes;
        } else {
            cell_ += c;
        }
    }

    void takeQuoted(QChar c) {
        if (c == u'"' && at_ + 1 < text_.size() && text_[at_ + 1] == u'"') {
            cell_ += text_[++at_];
        } else if (c == u'"') {
            place_ = Place::BehindQuotes;
        } else {
            cell_ += c;
        }
    }

    void endCell() {
        const QString cell = cell_.trimmed();
        if (row_.fault.isEmpty()) row_.fault = faultOf(cell);
        row_.cells.append(cell.startsWith(u'\'') && looksLikeFormula(cell) ? cell.mid(1) : cell);
        cell_.clear();
        place_ = Place::Plain;
    }

    void endRow() {
        endCell();
        if (row_.cells.size() > 1 || !row_.cells.first().isEmpty()) rows_.append(row_);
        row_ = {line_, {}, {}};
    }

    const QString& text_;
    const QChar separator_;
    qsizetype at_ = 0;
    int line_ = 1;
    Place place_ = Place::Plain;
    QString cell_;
    Row row_{1, {}, {}};
    QList<Row> rows_;
};

} // namespace

QList<Row> read(const QByteArray& bytes) {
    const QString text = decoded(bytes);
    return Reader(text).rows();
}

QString line(const QStringList& cells, QChar separator) {
    QStringList written;
    for (const QString& cell : cells) written.append(quoted(shownAsText(cell), separator));
    return written.join(separator) + QStringLiteral("\r\n");
}

QByteArray file(const QString& lines) { return QByteArrayLiteral("\xEF\xBB\xBF") + lines.toUtf8(); }

} // namespace molven::csv

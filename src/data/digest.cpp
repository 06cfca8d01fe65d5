#include "data/digest.h"

#include "data/decimal.h"

#include <QHash>

namespace molven::digest {

namespace {

constexpr int Characters = 3; ///< of a mark
constexpr quint32 Marks = 1u << 18;

constexpr quint64 Start = 0xcbf29ce484222325;
void mix(quint64& hash, char16_t unit) { hash = (hash ^ unit) * 0x100000001b3; }

quint64 hashOf(QStringView text) {
    quint64 hash = Start;
    for (const QChar c : text) mix(hash, c.unicode());
    return hash;
}

/// "007.50" and "7.5" alike.
quint64 hashOfPlainNumber(QStringView text) {
    const bool isNegative = text.startsWith(u'-');
    if (isNegative) text = text.sliced(1);
    const qsizetype point = text.indexOf(u'.');
    QStringView whole = text.first(point < 0 ? text.size() : point);
    QStringView decimals = point < 0 ? QStringView() : text.sliced(point + 1);
    while (whole.startsWith(u'0')) whole = whole.sliced(1);
    while (decimals.endsWith(u'0')) decimals.chop(1);
    quint64 hash = Start;
    if (isNegative && (!whole.isEmpty() || !decimals.isEmpty())) mix(hash, u'-');
    for (const QChar c : whole) mix(hash, c.unicode());
    if (!decimals.isEmpty()) mix(hash, u'.');
    for (const QChar c : decimals) mix(hash, c.unicode());
    return hash;
}

quint64 hashOfNumber(QStringView text) {
    if (!text.contains(u'e', Qt::CaseInsensitive)) return hashOfPlainNumber(text);
    const auto number = Decimal::read(text.toString());
    return number ? hashOfPlainNumber(number->toString()) : hashOf(text);
}

/// The last bits of such a hash are its weakest.
Mark folded(quint64 hash) { return static_cast<Mark>((hash ^ (hash >> 32)) % (Marks - 1) + 1); }

const QString Alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_");

void write(QString& text, Mark mark) {
    for (int shift = 12; shift >= 0; shift -= 6) text += Alphabet[(mark >> shift) & 63];
}

Mark readMark(QStringView text) {
    Mark mark = 0;
    for (const QChar c : text) mark = mark << 6 | static_cast<Mark>(Alphabet.indexOf(c) & 63);
    return mark;
}

/// The marks of a table's fields in their order, worked out once.
const QList<Mark>& marksOf(const Table& table) {
    static thread_local QHash<const Table*, QList<Mark>> known;
    QList<Mark>& marks = known[&table];
    if (marks.isEmpty())
        for (const Field* field : table.fields()) marks.append(markOf(*field));
    return marks;
}

} // namespace

Mark markOf(const Field& field, QStringView value) {
    if (value.isEmpty()) return 0;
    return folded(field.kind == Field::Kind::Number ? hashOfNumber(value) : hashOf(value));
}

Mark markOf(const Field& field) { return folded(hashOf(field.name)); }

QString of(const Record& record) {
    const QList<Mark>& fields = marksOf(record.table());
    QString text;
    text.reserve(fields.size() * 2 * Characters);
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const Field& field = *record.table().fields()[i];
        const Mark value = markOf(field, record.value(field));
        if (value == 0) continue;
        write(text, fields[i]);
        write(text, value);
    }
    return text;
}

QMap<const Field*, Mark> read(const Table& table, const QString& digest) {
    QMap<const Field*, Mark> values;
    const QList<Mark>& fields = marksOf(table);
    for (qsizetype i = 0; i + 2 * Characters <= digest.size(); i += 2 * Characters) {
        const QStringView text(digest);
        const qsizetype place = fields.indexOf(readMark(text.sliced(i, Characters)));
        if (place >= 0) values[table.fields()[place]] = readMark(text.sliced(i + Characters, Characters));
    }
    return values;
}

quint64 weight(Mark field, Mark value) {
    if (value == 0) return 0;
    quint64 bits = (quint64(field) << 18 | value) * 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    return bits ^ (bits >> 31);
}

quint64 sumOf(const Record& record) {
    const QList<Mark>& fields = marksOf(record.table());
    quint64 sum = 0;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const Field& field = *record.table().fields()[i];
        sum += weight(fields[i], markOf(field, record.value(field)));
    }
    return sum;
}

quint64 sumOf(const QString& digest) {
    quint64 sum = 0;
    for (qsizetype i = 0; i + 2 * Characters <= digest.size(); i += 2 * Characters) {
        const QStringView text(digest);
        sum += weight(readMark(text.sliced(i, Characters)), readMark(text.sliced(i + Characters, Characters)));
    }
    return sum;
}

} // namespace molven::digest

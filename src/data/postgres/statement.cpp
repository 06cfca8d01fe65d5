#include "data/postgres/statement.h"

#include "data/postgres/engine.h"

#include <QRegularExpression>

#include <algorithm>

#include <libpq-fe.h>

namespace molven::postgres {

namespace {

/// Types of the server.
constexpr Oid Numeric = 1700, Boolean = 16;

/// The same with $1, $2 ... for the question marks; those within quotes are text.
QString withServersMarks(const QString& sql) {
    QString text;
    text.reserve(sql.size() + 32);
    QChar quote;
    int count = 0;
    for (const QChar c : sql) {
        if (quote.isNull() && c == u'?') {
            text += u'$' + QString::number(++count);
            continue;
        }
        if (quote.isNull() && (c == u'\'' || c == u'"'))
            quote = c;
        else if (c == quote)
            quote = QChar();
        text += c;
    }
    return text;
}

QStringList tablesOf(const QString& sql) {
    static const QRegularExpression named(QStringLiteral("\\b(?:from|join|into|update) ([a-z0-9_]+\\.[a-z0-9_]+)"));
    QStringList found;
    for (const QRegularExpressionMatch& match : named.globalMatch(sql)) found.append(match.captured(1));
    return found;
}

bool begins(const QString& sql, std::initializer_list<const char*> words) {
    for (const char* word : words)
        if (sql.startsWith(QLatin1String(word), Qt::CaseInsensitive)) return true;
    return false;
}

} // namespace

Statement::Statement(Engine& engine, const QString& sql)
    : engine_(engine),
      sql_(withServersMarks(sql)),
      isOften_(begins(sql, {"select", "with", "insert", "update", "delete"})),
      isRead_(begins(sql, {"select", "with"})),
      tables_(tablesOf(sql)) {}

void Statement::run(const QStringList& values) {
    finish();
    answer_ = engine_.ask(*this, values);
}

bool Statement::next() {
    if (!answer_) return false;
    row_ = std::min(row_ + 1, PQntuples(answer_.get()));
    return row_ < PQntuples(answer_.get());
}

void Statement::finish() {
    answer_.reset();
    row_ = -1;
}

QByteArrayView Statement::bytes(int column) const {
    QByteArrayView value(PQgetvalue(answer_.get(), row_, column), PQgetlength(answer_.get(), row_, column));
    if (value.isEmpty()) return value;
    const Oid type = PQftype(answer_.get(), column);
    if (type == Boolean) return value == QByteArrayView("t") ? "1" : "0";
    if (type != Numeric || !value.contains('.')) return value;
    while (value.endsWith('0')) value.chop(1);
    if (value.endsWith('.')) value.chop(1);
    return value;
}

qint64 Statement::integer(int column) const { return bytes(column).toLongLong(); }

} // namespace molven::postgres

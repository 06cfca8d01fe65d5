#include "data/postgres/statement.h"

#include "data/postgres/engine.h"

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
      writes_(begins(sql, {"insert", "update", "delete"})) {}

void Statement::run(const QStringList& values) {
    finish();
    result_ = engine_.run(sql_, values, isOften_, writes_);
}

bool Statement::next() {
    if (!result_) return false;
    row_ = std::min(row_ + 1, PQntuples(result_.get()));
    return row_ < PQntuples(result_.get());
}

void Statement::finish() {
    result_.reset();
    row_ = -1;
}

QByteArrayView Statement::bytes(int column) const {
    QByteArrayView value(PQgetvalue(result_.get(), row_, column), PQgetlength(result_.get(), row_, column));
    if (PQftype(result_.get(), column) == Boolean) return value == QByteArrayView("t") ? "1" : "0";
    if (PQftype(result_.get(), column) != Numeric || !value.contains('.')) return value;
    while (value.endsWith('0')) value.chop(1);
    if (value.endsWith('.')) value.chop(1);
    return value;
}

qint64 Statement::integer(int column) const { return bytes(column).toLongLong(); }

qint64 Statement::changed() const { return QByteArrayView(PQcmdTuples(result_.get())).toLongLong(); }

qint64 Statement::insertedKey() const {
    return PQntuples(result_.get()) == 1 ? QByteArrayView(PQgetvalue(result_.get(), 0, 0)).toLongLong() : 0;
}

} // namespace molven::postgres

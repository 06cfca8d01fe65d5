#include "data/sqlite/statement.h"

#include "data/sqlite/connection.h"

#include <cstring>

#include <sqlite3.h>

namespace molven::sqlite {

Statement::Statement(sqlite3* connection, const QString& sql) : connection_(connection) {
    const QByteArray text = sql.toUtf8();
    if (sqlite3_prepare_v3(connection_, text.constData(), static_cast<int>(text.size()), SQLITE_PREPARE_PERSISTENT,
                           &statement_, nullptr) != SQLITE_OK)
        throw fault(connection_);
}

Statement::~Statement() { sqlite3_finalize(statement_); }

void Statement::run(const QStringList& values) {
    finish();
    bound_.clear();
    for (int i = 0; i < values.size(); ++i) {
        if (values[i].isNull()) {
            sqlite3_bind_null(statement_, i + 1);
            continue;
        }
        const QByteArray& text = bound_.emplace_back(values[i].toUtf8());
        sqlite3_bind_text(statement_, i + 1, text.constData(), static_cast<int>(text.size()), SQLITE_STATIC);
    }
    step();
    unread_ = onRow_;
}

void Statement::step() {
    const int code = sqlite3_step(statement_);
    onRow_ = code == SQLITE_ROW;
    if (onRow_) return;
    if (code == SQLITE_DONE) {
        sqlite3_reset(statement_);
        return;
    }
    const DataError error = fault(connection_);
    sqlite3_reset(statement_);
    if (code == SQLITE_INTERRUPT) throw Refusal(QStringLiteral("Opération abandonnée"));
    throw error;
}

bool Statement::next() {
    if (unread_)
        unread_ = false;
    else if (onRow_)
        step();
    return onRow_;
}

void Statement::finish() {
    if (onRow_) sqlite3_reset(statement_);
    onRow_ = unread_ = false;
}

QByteArrayView Statement::bytes(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column)); // before its length
    return {text, text ? sqlite3_column_bytes(statement_, column) : 0};
}

qint64 Statement::integer(int column) const { return sqlite3_column_int64(statement_, column); }

bool Statement::equals(const Statement& other) const {
    const int columns = sqlite3_column_count(statement_);
    if (columns != sqlite3_column_count(other.statement_)) return false;
    for (int i = 0; i < columns; ++i) {
        if (sqlite3_column_type(statement_, i) != sqlite3_column_type(other.statement_, i)) return false;
        const void* mine = sqlite3_column_blob(statement_, i);
        const void* others = sqlite3_column_blob(other.statement_, i);
        const int size = sqlite3_column_bytes(statement_, i);
        if (size != sqlite3_column_bytes(other.statement_, i)) return false;
        if (size > 0 && std::memcmp(mine, others, static_cast<std::size_t>(size)) != 0) return false;
    }
    return true;
}

} // namespace molven::sqlite
